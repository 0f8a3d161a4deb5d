#include "win32/linux/machine/staged_files.h"

#include <algorithm>

namespace machine {

const StagedFile *StagedFiles::Find(const std::filesystem::path &target) const {
  const auto found = files.find(target);
  return found != files.end() ? &found->second : nullptr;
}

void StagedFiles::Put(const std::filesystem::path &target, StagedFile file) {
  const auto [place, isNew] = files.try_emplace(target, std::move(file));
  if (!isNew)
    place->second.content = std::move(file.content);
}

bool StagedFiles::HasFolder(const std::filesystem::path &target) const {
  return std::ranges::find(folders, target, &StagedFolder::target) != folders.end();
}

void StagedFiles::AddFolder(StagedFolder folder) {
  KnowFolder(folder.target);
  folders.push_back(std::move(folder));
}

std::vector<std::string> StagedFiles::NamesIn(const std::filesystem::path &folder) const {
  std::vector<std::string> names;
  const auto add = [&](const std::filesystem::path &target) {
    if (target.parent_path() == folder)
      names.push_back(target.filename());
  };
  for (const auto &[target, file] : files)
    add(target);
  for (const StagedFolder &made : folders)
    add(made.target);
  return names;
}

} // namespace machine
