// How the service calls itself in the clients and in front of the user.
#pragma once

#include <string>

// Its dial-up connection, which is also the title of its message boxes.
inline constexpr const char *ServiceConnectionName = "@zuvioダイヤラ";

// What the wizards that know the subscriber's IDs call that connection in their records.
inline constexpr const char *ShortConnectionName = "@zuvio";

// The title of an account, after an ID or an address. One that is too long for a client is refused further on, by the
// adapter's own bounds.
inline std::string ServiceTitle(const std::string &name) { return "@zuvio(" + name + ")"; }
