#include "options.h"

#include "usage.h"
#include "utf8.h"

CLI::Option *AddClientOption(CLI::App &command, int &client) {
  return command
      .add_option_function<std::string>(
          "--client",
          [&client](const std::string &name) {
            if (name != "oe" && name != "communicator")
              throw UsageError("--client: there is no client " + name + ", only oe and communicator");
            client = name == "oe" ? 0 : 1;
          },
          "oe or communicator")
      ->type_name("CLIENT");
}

CLI::Option *AddTextOption(CLI::App &command, const std::string &name, std::string &value, const std::string &help) {
  return command
      .add_option_function<std::string>(
          name,
          [name, &value](const std::string &utf8) {
            const std::optional<std::string> text = FromUtf8(utf8);
            if (!text)
              throw UsageError(name + " has a character that code page 932 doesn't have");
            value = *text;
          },
          help)
      ->type_name("TEXT");
}
