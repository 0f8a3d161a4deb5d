// A machine folder for one measurement or one run of a fuzz target; the suites have their own machines.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class ScratchMachine {
public:
  ScratchMachine() {
    std::string name = (std::filesystem::temp_directory_path() / "acctkit-scratch-XXXXXX").string();
    folder = mkdtemp(name.data());
    std::filesystem::create_directories(Drive());
    setenv("ACCTKIT_MACHINE", folder.c_str(), 1);
  }
  ~ScratchMachine() { std::filesystem::remove_all(folder); }
  ScratchMachine(const ScratchMachine &) = delete;
  ScratchMachine &operator=(const ScratchMachine &) = delete;

  const std::filesystem::path &Folder() const { return folder; }
  // The folder of drive C:.
  std::filesystem::path Drive() const { return folder / "drive_c"; }

  // Writes a file by its path below C:\, with slashes.
  void PutFile(const std::filesystem::path &path, const std::string &bytes) const {
    std::ofstream(Drive() / path, std::ios::binary) << bytes;
  }
  std::string GetFile(const std::filesystem::path &path) const {
    std::ifstream file(Drive() / path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

private:
  std::filesystem::path folder;
};
