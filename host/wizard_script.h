// Reads a script of what a user does in a wizard and expects to see: one step a line, in UTF-8. The language is
// described in docs/wizard-scripts.md.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct Step {
  size_t line = 0;
  std::string command; // as it stands in the script, an expectation with what is expected: "expect text"
  int id = 0;          // a control's
  int number = 0;
  std::string text; // to be typed, in the system's code page; or a word or number, or what is expected, in UTF-8 as
                    // `show` has it
};

struct WizardScript {
  std::string path;
  std::vector<Step> steps;
  size_t lines = 0;
};

// Throws UsageError, which names the file and the line.
WizardScript ReadWizardScript(const std::string &path);

// A UTF-8 text in quotes, its control characters escaped.
std::string Quoted(const std::string &utf8);

// Quoted texts as a list.
std::string Listed(const std::vector<std::string> &quoted);
