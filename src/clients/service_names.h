// How the service calls itself in the clients and in front of the user.
#pragma once

#include <string>

// Its dial-up connection, which is also the title of its message boxes.
inline constexpr const char *ServiceConnectionName = "@zuvioダイヤラ";

// The name of that connection in the records of the wizards that are told the subscriber's IDs.
inline constexpr const char *ShortConnectionName = "@zuvio";

// The title of an account, from an ID or an address. An adapter refuses one that is too long for its client.
inline std::string ServiceTitle(const std::string &name) { return "@zuvio(" + name + ")"; }
