// What GetClientType answers, for mail and news alike. Code outside the adapters tells clients apart by this number
// alone.
#pragma once

#include <cstdint>

enum ClientType : int32_t { ClientOutlookExpress = 1, ClientCommunicator, ClientNetscape6, ClientExternalMailer };
