// Where the registry names the external mailer's plug-in.
#pragma once

namespace external_mailer {

inline constexpr const char *PluginKey = "SOFTWARE\\Harveld\\@zuvioSetup"; // below HKEY_LOCAL_MACHINE
inline constexpr const char *FolderValue = "InstPath";
inline constexpr const char *FileValue = "ProgramName";

// What the sample plug-in keeps in its folder.
inline constexpr const char *SampleSettingsFile = "settings.txt";

} // namespace external_mailer
