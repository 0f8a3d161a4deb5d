// Times one sign-up as the first call of a process: `cold_signup`, on the machine in ACCTKIT_MACHINE.
#include "acctkit/acctkit.h"

#include <chrono>
#include <cstdio>
#include <cstring>

int main() {
  SignupRecord record{};
  std::strcpy(record.serviceId, "ABC01234");
  std::strcpy(record.senderName, "Taro Yamada");
  std::strcpy(record.mailAddress, "taro@zuvio.example");
  std::strcpy(record.startPage, "http://www.zuvio.example/");
  const auto begin = std::chrono::steady_clock::now();
  const int32_t result = SetupAfterSignup(&record);
  const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
  std::printf("%.3f ms, result %d\n", time.count(), static_cast<int>(result));
}
