// Where the registry names the external mailer's plug-in, and where the sample plug-in stands.
#pragma once

namespace external_mailer {

inline constexpr const char *PluginKey = "SOFTWARE\\Harveld\\@zuvioSetup"; // below HKEY_LOCAL_MACHINE
inline constexpr const char *FolderValue = "InstPath";
inline constexpr const char *FileValue = "ProgramName";

// The folder of the sample plug-in, its mailer's program there, and the file in which it keeps what it is handed.
inline constexpr const char *SampleFolder = "C:\\Program Files\\Harveld\\SampleMailer";
inline constexpr const char *SampleProgram = "mailer.exe";
inline constexpr const char *SampleSettings = "settings.txt";

} // namespace external_mailer
