/*
 * AcctKit: puts a subscriber's mail and news settings into the client programs on the subscriber's machine.
 *
 * This is a plain C interface. Unless a comment says otherwise, every string is zero-terminated text in the system's
 * code page (932, Shift-JIS), and every result is a 32-bit integer: 1 for yes or done, 0 for no or failed. A failure
 * gives no error code. Only the wizards show windows, and no call writes a password. The library keeps nothing between
 * calls. Make all calls from one thread.
 *
 * `client` is a client index: 0 Outlook Express, 1 Netscape Communicator 4.x. For any other index the result is 0, and
 * the plain functions then touch none of the other arguments. All pointers must be valid unless a comment says
 * otherwise.
 *
 * Some positions of an array of strings hold an integer: cast it to the pointer type.
 *
 * On Linux a call is one change of the machine: what it writes is on disk when it returns, or, where the disk fails,
 * nothing of it, and the result is 0 then (of SetupAfterSignup still the plug-in's). There the functions without
 * windows may be called from any thread.
 *
 * A text that goes into Communicator's preference file must not contain a double quote or a control character, and its
 * last byte must not be 0x5C, the byte of the backslash. The host has to check this. The file holds the texts unescaped
 * between quotes, and Communicator reads it byte by byte as JavaScript. There a quote ends the text, and 0x5C, which is
 * also the second byte of characters such as 0x955C in code page 932, changes the meaning of the next byte; at the end
 * that is the closing quote. Communicator then drops that line and all lines after it, including the user's own, while
 * the result of the call is 1. The byte 0x5C before the end only garbles the text; two in a row at the end do no harm.
 * These texts are the user, the sender's name, the mail address and the hosts of an account (not its title, nor the
 * display name of a news server), and the start page's URL.
 *
 * The DLL and the sample plug-in run on Windows 98 and NT 4 with Internet Explorer 5, on a Pentium II or later, and on
 * all later Windows; the host program acctkit.exe needs Windows 2000. Names, ordinals and records stay as they are for
 * as long as the first number of the version does.
 */
#ifndef ACCTKIT_ACCTKIT_H
#define ACCTKIT_ACCTKIT_H

#include <stdint.h>

/* The version of this header; the library's version resource has the same. */
#define ACCTKIT_VERSION "0.1.0"

#if defined(_WIN32)
#define ACCTKIT_API
#define ACCTKIT_CALL __cdecl
#else
#define ACCTKIT_API __attribute__((visibility("default")))
#define ACCTKIT_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Records ---------------------------------------------------------------------------------------------------- */

/*
 * What the host's sign-up program knows about a new subscriber. 2,072 bytes; every text is zero-terminated within its
 * field. If a field has no terminator, all its bytes but the last are read.
 */
typedef struct SignupRecord {
  char serviceId[9];        /* the subscriber's ID */
  char connectionName[257]; /* for the mailer plug-in */
  char senderName[257];     /* the name shown as sender */
  char mailUser[257];       /* the mail account of the original-domain service */
  char reservedText[257];   /* not read */
  char mailAddress[257];    /* the full mail address */
  char popServer[257];      /* POP host */
  char smtpServer[257];     /* SMTP host */
  char startPage[260];      /* URL of the browser's start page */
  int32_t serviceKind;      /* 0 normal service, 1 original-domain service */
} SignupRecord;

/* What the mailer plug-in says about its mailer. 312 bytes. */
typedef struct MailerInfo {
  char name[51];  /* the name shown for this client */
  char path[261]; /* full path of the mailer's program file */
} MailerInfo;

/* The account that the mailer plug-in gets. 1,808 bytes; all bytes of a field after its text are zero. */
typedef struct MailEnvironment {
  char serviceId[9];
  char connectionName[257];
  char senderName[257];
  char mailUser[257];
  char reservedText[257]; /* always empty */
  char mailAddress[257];
  char popServer[257];
  char smtpServer[257];
} MailEnvironment;

/*
 * The functions of a mailer plug-in, a library that the registry names: `InstPath` (folder, without a final backslash)
 * and `ProgramName` (file name) of HKEY_LOCAL_MACHINE "SOFTWARE\Harveld\@zuvioSetup". A plug-in exports all three, as
 * GetMailerInfo, SetMailEnvironment and SetCompleteFlag. Only the result 1 counts as success. A plug-in must catch its
 * own exceptions: one that leaves it counts as the result 0, but the 32-bit DLL can't catch it, and there it ends the
 * process.
 */
typedef int32_t(ACCTKIT_CALL *GetMailerInfoEntry)(MailerInfo *info, int32_t size);
typedef int32_t(ACCTKIT_CALL *SetMailEnvironmentEntry)(const MailEnvironment *environment, int32_t size);
typedef int32_t(ACCTKIT_CALL *SetCompleteFlagEntry)(void);

/* ---- Clients and accounts --------------------------------------------------------------------------------------- */

/* Whether the client is installed for mail, or for news. Reads the registry, writes nothing. */
ACCTKIT_API int32_t ACCTKIT_CALL IsInstallMailer(int32_t client);
ACCTKIT_API int32_t ACCTKIT_CALL IsInstallNews(int32_t client);

/*
 * The client's version. `*major` and `*minor` get the first two numbers of its version text, 0 for a number that can't
 * be read. If the client isn't installed, both are 0, and so is the result. An invalid index leaves them unchanged.
 */
ACCTKIT_API int32_t ACCTKIT_CALL GetMailVersion(int32_t client, int32_t *major, int32_t *minor);
ACCTKIT_API int32_t ACCTKIT_CALL GetNewsVersion(int32_t client, int32_t *major, int32_t *minor);

/*
 * Whether there is an account with this title. `spec` describes the account as an array of strings, by position:
 *
 *          mail                               news
 *   0      POP3 user, the service ID          news user, the service ID
 *   1      sender's name                      sender's name
 *   2      title of the account               first part of the account's title
 *   3      reserved, an empty text            reserved, an empty text
 *   4      SMTP host                          news host
 *   5      POP3 host                          display name of the news server
 *   6      mail address                       mail address
 *   7      name of the dial-up connection     name of the dial-up connection
 *   8      1 for the original-domain service, (not read)
 *          else 0: an integer, not a string
 *
 * `key` is read and written, and must hold a text. If the result is 1, it names the account (Outlook Express: its
 * registry key of eight hexadecimal digits; Communicator: the profile); if 0, it keeps its text. `message` is only
 * written: if the result is 1, with the question whether the account may be overwritten (for news, one line for a list
 * of such accounts); if 0, with an empty text. The library doesn't know the sizes of these buffers. Terminator
 * included, it never writes more than ACCTKIT_KEY_SIZE bytes to `key` (an account with a longer key isn't found), and
 * never more than ACCTKIT_MESSAGE_SIZE to `message`, which gets at most 68 bytes more than the title has. The search in
 * Communicator leaves an empty prefs.js in a profile's folder that has none.
 */
#define ACCTKIT_KEY_SIZE 256
#define ACCTKIT_MESSAGE_SIZE 1024
ACCTKIT_API int32_t ACCTKIT_CALL IsExistMailAccount(int32_t client, const char *const *spec, char *key, char *message);
ACCTKIT_API int32_t ACCTKIT_CALL IsExistNewsAccount(int32_t client, const char *const *spec, char *key, char *message);

/*
 * Writes an account. `spec` is the array described above (positions 0 to 7). An empty `key` makes a new account, whose
 * key isn't returned; a key that the matching IsExist call returned overwrites that account.
 * What is written in Outlook Express: values below HKEY_CURRENT_USER "Software\Microsoft\Internet Account Manager", and
 * settings of the client itself below "Software\Microsoft\Outlook Express" and the user's key of "Identities". In
 * Communicator: keys of the profile below both roots, its folders, its prefs.js, and for news the profile's map of news
 * servers.
 * The result is 0, with nothing written, for a text that is too long for the client's format; in Outlook Express for a
 * key that belongs to an account of the other kind; in Communicator for an install directory that is empty or can't be
 * read, a title for a new profile that is empty or can't be a folder's name, a news host without a full stop, and files
 * without room for the account.
 */
ACCTKIT_API int32_t ACCTKIT_CALL SetupMailAccount(int32_t client, const char *const *spec, const char *key);
ACCTKIT_API int32_t ACCTKIT_CALL SetupNewsAccount(int32_t client, const char *const *spec, const char *key);

/* ---- Shorthand for the service's own accounts ------------------------------------------------------------------- */

/*
 * The same for a host that knows only the subscriber and not the servers. `values` is a short array, by position:
 *
 *          Zuvio mail       Zuvio news                    KERM mail (original-domain service)
 *   0      ID               ID                            mail account
 *   1      sender's name    sender's name                 sender's name
 *   2      mail address     mail address                  mail address, also the account's title
 *   3                       news server, an integer:      SMTP host
 *                           1 forum, 2 second server
 *   4                                                     POP host
 *
 * `values` is read for any client index. The library adds titles, servers and the connection's name, which are the
 * service's own. The news functions return 0 for any other news server.
 */
ACCTKIT_API int32_t ACCTKIT_CALL IsExistZuvioMailAccount(int32_t client, const char *const *values, char *key,
                                                         char *message);
ACCTKIT_API int32_t ACCTKIT_CALL SetupZuvioMailAccount(int32_t client, const char *const *values, const char *key);
ACCTKIT_API int32_t ACCTKIT_CALL IsExistZuvioNewsAccount(int32_t client, const char *const *values, char *key,
                                                         char *message);
ACCTKIT_API int32_t ACCTKIT_CALL SetupZuvioNewsAccount(int32_t client, const char *const *values, const char *key);
ACCTKIT_API int32_t ACCTKIT_CALL IsExistKERMMailAccount(int32_t client, const char *const *values, char *key,
                                                        char *message);
ACCTKIT_API int32_t ACCTKIT_CALL SetupKERMMailAccount(int32_t client, const char *const *values, const char *key);

/* ---- After a sign-up -------------------------------------------------------------------------------------------- */

/*
 * Configures all clients in one call: a mail account in Outlook Express and the start page of its browser, the same in
 * Communicator if that is installed, and the mailer plug-in, which gets the record's data. An account with the same
 * title is overwritten without a question. If a client refuses the account, the call goes on with the next client. A
 * new Communicator profile gets its start page only at a second call. With a `serviceKind` other than 0 and 1 only the
 * plug-in is called. The result is that of the plug-in's SetMailEnvironment, or 0 if there is no plug-in, even if
 * something was written.
 */
ACCTKIT_API int32_t ACCTKIT_CALL SetupAfterSignup(const SignupRecord *record);

/* Tells the plug-in that the whole process has ended. The result is that of its SetCompleteFlag, 0 without a plug-in.
 */
ACCTKIT_API int32_t ACCTKIT_CALL SetupCompleted(void);

/*
 * Makes `url` the browser's start page. Client 0: the value `Start Page` of HKEY_CURRENT_USER
 * "Software\Microsoft\Internet Explorer\Main", a key that must exist; `profile` isn't read and may be null.
 * Client 1: prefs.js of the Communicator profile. The result is 1 also if that file couldn't be written, or stayed
 * unchanged because the URL has more than 212 bytes; 0 only if Communicator's install directory can't be read or is
 * empty.
 */
ACCTKIT_API int32_t ACCTKIT_CALL SetBrowserStartPage(int32_t client, const char *profile, const char *url);

/*
 * Makes every Outlook Express account that uses the service's dial-up connection independent of it: `Connection Type`
 * becomes 3 (1 before version 5) and `Connectoid` is removed. The result is 0 only if Outlook Express isn't installed.
 */
ACCTKIT_API int32_t ACCTKIT_CALL OutlookDisable(void);

/* ---- Wizards ---------------------------------------------------------------------------------------------------- */

/*
 * Each wizard leads the user through one modal property sheet, which asks for the settings, tests them and writes the
 * account when the user finishes it. A cancelled wizard has written nothing, with one exception: if the user pressed
 * Finish and then cancelled, Communicator's search may have left an empty prefs.js (see IsExistMailAccount). The texts
 * are in Japanese. Call a wizard on the thread of the host's user interface; it returns when the sheet has closed.
 *
 * The result is 1 if the sheet was shown, however it ended. It is 0, with nothing written, if the sheet never came up:
 * with a message, if an argument is null or no client is installed; without one, if another thread has a wizard open
 * or, on Linux, no front end shows the windows.
 *
 * `unused` isn't read. `id` is the subscriber's ID to start with. `idList` holds all of the subscriber's IDs, one after
 * the other, each ended by a zero byte; one more zero byte ends the list. That last one is required: the library can't
 * find the end of a list without it. If the list doesn't contain `id`, the wizard starts with the first ID of the list;
 * if `id` is empty, with an empty field. The INI file of the service, `service.ini`, and the help file, `kantan.hlp`,
 * are in the folder of the host's program file.
 */
/* Mail account of the service's normal kind, in any mail client. */
ACCTKIT_API int32_t ACCTKIT_CALL MailerWizard(int32_t unused, const char *id, const char *idList);
/* Second mail account of the service, whose address isn't made from the ID. */
ACCTKIT_API int32_t ACCTKIT_CALL MailerWizard2(void);
/* The service's two news servers. */
ACCTKIT_API int32_t ACCTKIT_CALL NewsWizard(int32_t unused, const char *id, const char *idList);
/* Mail account of the original-domain service, whose servers the user types. */
ACCTKIT_API int32_t ACCTKIT_CALL KERMWizard(void);
/* Mail account of the service in two pages; asks before it is cancelled. */
ACCTKIT_API int32_t ACCTKIT_CALL ShortMailWizard(int32_t unused, const char *id);

#ifdef __cplusplus
}
#endif

#endif /* ACCTKIT_ACCTKIT_H */
