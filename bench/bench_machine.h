// A machine folder for the length of a measurement.
#pragma once

#include "win32/win32.h"

#include <cstdlib>
#include <filesystem>
#include <string>

class BenchMachine {
public:
  BenchMachine() {
    std::string name = (std::filesystem::temp_directory_path() / "acctkit-bench-XXXXXX").string();
    folder = mkdtemp(name.data());
    std::filesystem::create_directories(folder / "drive_c");
    setenv("ACCTKIT_MACHINE", folder.c_str(), 1);
  }
  ~BenchMachine() { std::filesystem::remove_all(folder); }
  BenchMachine(const BenchMachine &) = delete;
  BenchMachine &operator=(const BenchMachine &) = delete;

  const std::filesystem::path &Folder() const { return folder; }

private:
  std::filesystem::path folder;
};
