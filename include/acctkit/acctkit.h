/*
 * AcctKit: puts a subscriber's mail and news settings into the client programs on the subscriber's machine.
 *
 * Plain C interface. Every string is zero-terminated text in the system's code page (932, Shift-JIS) and every result a
 * 32-bit integer, 1 for yes or done and 0 for no or failed, unless told otherwise. A failure carries no code. Only the
 * wizards show windows, and no call writes a password. The library keeps nothing between calls; calls are made from one
 * thread.
 *
 * `client` is a client index: 0 Outlook Express, 1 Netscape Communicator 4.x. Any other index answers 0, and the plain
 * exports then touch none of the other arguments. All pointers have to be valid unless told otherwise.
 *
 * An array of strings may hold an integer at a position told below: the integer cast to the pointer type.
 *
 * The host keeps out of every text that goes into Communicator's preference file: a double quote, a control character,
 * and the byte 0x5C, a backslash's, as the text's last one. The texts stand there between quotes and unescaped, and
 * Communicator reads them byte by byte as JavaScript: a quote ends the text, and 0x5C, which is also the second byte of
 * characters such as 0x955C in code page 932, changes what the byte behind it means, at the end the closing quote.
 * Communicator then drops that line and all behind it, the user's own too, while the call answers 1. The byte 0x5C
 * further in only garbles the text; at the end two in a row do no harm. These texts are the user, the sender's name,
 * the mail address and the hosts of an account (not its title, nor the display name of a news server), and the start
 * page's URL.
 *
 * The DLL and the sample plug-in run on Windows 98 and NT 4 with Internet Explorer 5, on a Pentium II or later, and on
 * all later Windows; the host program acctkit.exe needs Windows 2000. Names, ordinals and records stay as they are for
 * as long as the first number of the version does.
 */
#ifndef ACCTKIT_ACCTKIT_H
#define ACCTKIT_ACCTKIT_H

#include <stdint.h>

/* The version of this header, which the library's version resource has too. */
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
 * What the host's sign-up program knows of a new subscriber. 2,072 bytes; every text is zero-terminated within its
 * field. A field without a terminator is read up to its last byte but one.
 */
typedef struct SignupRecord {
  char serviceId[9];        /* the subscriber's ID */
  char connectionName[257]; /* handed to the mailer plug-in */
  char senderName[257];     /* the name shown as sender */
  char mailUser[257];       /* the mail account of the original-domain service */
  char reservedText[257];   /* not read */
  char mailAddress[257];    /* the full mail address */
  char popServer[257];      /* POP host */
  char smtpServer[257];     /* SMTP host */
  char startPage[260];      /* URL of the browser's start page */
  int32_t serviceKind;      /* 0 normal service, 1 original-domain service */
} SignupRecord;

/* What the mailer plug-in tells of its mailer. 312 bytes. */
typedef struct MailerInfo {
  char name[51];  /* the name shown for this client */
  char path[261]; /* full path of the mailer's program file */
} MailerInfo;

/* What is handed to the mailer plug-in: one account. 1,808 bytes, all zero behind each text. */
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
 * The entry points of a mailer plug-in, a library that the registry names: `InstPath` (folder, without a final
 * backslash) and `ProgramName` (file name) of HKEY_LOCAL_MACHINE "SOFTWARE\Harveld\@zuvioSetup". A plug-in exports all
 * three by these names. Only an answer of exactly 1 counts as success. They catch their own exceptions: one that is
 * thrown counts as the answer 0, but the 32-bit DLL can't catch it, and there it ends the process.
 */
typedef int32_t(ACCTKIT_CALL *GetMailerInfoEntry)(MailerInfo *info, int32_t size);
typedef int32_t(ACCTKIT_CALL *SetMailEnvironmentEntry)(const MailEnvironment *environment, int32_t size);
typedef int32_t(ACCTKIT_CALL *SetCompleteFlagEntry)(void);

/* ---- Clients and accounts --------------------------------------------------------------------------------------- */

/* Tells whether the client is installed for mail, or for news. Reads the registry, writes nothing. */
ACCTKIT_API int32_t ACCTKIT_CALL IsInstallMailer(int32_t client);
ACCTKIT_API int32_t ACCTKIT_CALL IsInstallNews(int32_t client);

/*
 * The client's version. `*major` and `*minor` take the two leading numbers of its version text, 0 for what can't be
 * read; both are 0 for a client that isn't installed, with the result 0. An invalid index leaves them as they are.
 */
ACCTKIT_API int32_t ACCTKIT_CALL GetMailVersion(int32_t client, int32_t *major, int32_t *minor);
ACCTKIT_API int32_t ACCTKIT_CALL GetNewsVersion(int32_t client, int32_t *major, int32_t *minor);

/*
 * Tells whether there is an account of a title. `spec` is the account as an array of strings, by position:
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
 * `key` is read and written: on 1 it names the account (Outlook Express: its registry key of eight hexadecimal digits;
 * Communicator: the profile), on 0 it keeps its text. `message` is written only: on 1 the question whether the account
 * may be overwritten (for news, a line of a list of such accounts), on 0 an empty text. The library doesn't know the
 * sizes of these buffers; terminators included, it never writes more than ACCTKIT_KEY_SIZE bytes to `key` (an account
 * whose key is longer counts as none), and never more than ACCTKIT_MESSAGE_SIZE to `message`, where it writes at most
 * 68 bytes more than the title has. Communicator leaves an empty prefs.js behind in a profile's directory that has
 * none.
 */
#define ACCTKIT_KEY_SIZE 256
#define ACCTKIT_MESSAGE_SIZE 1024
ACCTKIT_API int32_t ACCTKIT_CALL IsExistMailAccount(int32_t client, const char *const *spec, char *key, char *message);
ACCTKIT_API int32_t ACCTKIT_CALL IsExistNewsAccount(int32_t client, const char *const *spec, char *key, char *message);

/*
 * Writes an account. `spec` is the array told above (positions 0 to 7). An empty `key` asks for a new account, a key
 * that the matching IsExist call gave back overwrites that account; the key of a new account isn't given back.
 * Outlook Express: values below HKEY_CURRENT_USER "Software\Microsoft\Internet Account Manager", and settings of the
 * client itself below "Software\Microsoft\Outlook Express" and the user's key of "Identities". Communicator: keys of
 * the profile below both roots, its directories, its prefs.js, and for news the profile's map of news servers. Before
 * anything is written, 0 refuses a text that is too long for its place in the client's format, a key that belongs to an
 * account of the other kind (Outlook Express), an install directory that is empty or can't be read, a title for a new
 * profile that is empty or can't be a folder's name, a news host without a dot, and files that have no room for the
 * account (Communicator).
 */
ACCTKIT_API int32_t ACCTKIT_CALL SetupMailAccount(int32_t client, const char *const *spec, const char *key);
ACCTKIT_API int32_t ACCTKIT_CALL SetupNewsAccount(int32_t client, const char *const *spec, const char *key);

/* ---- Shorthand for the service's own accounts ------------------------------------------------------------------- */

/*
 * The same for a host that knows only the subscriber. `values` is a short array, by position:
 *
 *          Zuvio mail       Zuvio news                    KERM mail (original-domain service)
 *   0      ID               ID                            mail account
 *   1      sender's name    sender's name                 sender's name
 *   2      mail address     mail address                  mail address, also the account's title
 *   3                       news server, an integer:      SMTP host
 *                           1 forum, 2 second server
 *   4                                                     POP host
 *
 * `values` is read whatever the client index is. Titles, servers and the connection's name are the service's own. The
 * news calls answer 0 for any other news server.
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
 * Configures all there is in one call: a mail account and the start page in Outlook Express and its browser, the same
 * in Communicator if that is installed, and the data handed to the mailer plug-in. An account of the same title is
 * overwritten without a question, and a client that refuses the account is passed over without a word. A new
 * Communicator profile gets its start page only at a second call. A `serviceKind`
 * other than 0 and 1 serves the plug-in alone. The result is what the plug-in's SetMailEnvironment answers, and 0 if
 * there is no plug-in, whatever was written before.
 */
ACCTKIT_API int32_t ACCTKIT_CALL SetupAfterSignup(const SignupRecord *record);

/* Tells the plug-in that the whole process has ended; the result is its SetCompleteFlag's, or 0 without a plug-in. */
ACCTKIT_API int32_t ACCTKIT_CALL SetupCompleted(void);

/*
 * Makes `url` the browser's start page. Client 0: the value `Start Page` of HKEY_CURRENT_USER
 * "Software\Microsoft\Internet Explorer\Main", whose key has to be there; `profile` isn't read and may be null.
 * Client 1: prefs.js of the Communicator profile; 1 also if that file couldn't be written or the URL has more than 212
 * bytes, which leaves it as it is, 0 only if Communicator's install directory can't be read or is empty.
 */
ACCTKIT_API int32_t ACCTKIT_CALL SetBrowserStartPage(int32_t client, const char *profile, const char *url);

/*
 * Takes every Outlook Express account that is tied to the service's dial-up connection off it: `Connection Type`
 * becomes 3 (1 before version 5) and `Connectoid` is removed. 0 if Outlook Express isn't installed.
 */
ACCTKIT_API int32_t ACCTKIT_CALL OutlookDisable(void);

/* ---- Wizards ---------------------------------------------------------------------------------------------------- */

/*
 * Each walks the user through one modal property sheet, which asks for the settings, judges them and writes the account
 * when the user finishes it. A cancelled wizard has written nothing, but for the empty prefs.js that Communicator's
 * search may leave (see IsExistMailAccount) when the user chose to finish and then cancelled. The texts are in
 * Japanese. Call them on the thread of the host's user interface; they return when the sheet has closed.
 *
 * The result is 1 if the sheet was shown, however it ended. It is 0, with nothing written, if it never came up: for a
 * null argument and where no client is installed, each with a message, and at once while another thread has a wizard
 * open or on a platform without a user (natively, without a front end before the windows).
 *
 * `unused` isn't read. `id` is the subscriber's ID to start with. `idList` holds all of the subscriber's IDs, one
 * behind the other, each ended by a zero byte and the list by one more; an `id` that isn't in it starts with the first,
 * an empty one with an empty field.
 * Nobody can tell a list without that last zero byte from one that goes on: it has to be there. The ini file of the
 * service, `service.ini`, and the help file, `kantan.hlp`, stand beside the host's program file.
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
