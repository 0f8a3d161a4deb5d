// A mailer plug-in that throws an object of its own type, whose destructor is unloaded with the library.
#include "acctkit/acctkit.h"

#include <string>

#ifdef _WIN32
#define ENTRY extern "C" __declspec(dllexport)
#else
#define ENTRY extern "C" __attribute__((visibility("default")))
#endif

namespace {
struct Trouble {
  std::string text = "what a plug-in thought worth telling";
};
} // namespace

ENTRY int32_t GetMailerInfo(MailerInfo *, int32_t) { throw Trouble(); }
ENTRY int32_t SetMailEnvironment(const MailEnvironment *, int32_t) { throw Trouble(); }
ENTRY int32_t SetCompleteFlag(void) { throw Trouble(); }
