#include "terminal/key_reader.h"

#include <iterator>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace terminal {

namespace {

constexpr int Nothing = -1;
constexpr int Patience = 200; // milliseconds between the bytes of one key
constexpr int Forever = -1;

constexpr int Escape = 0x1B;
constexpr int FirstCharacter = ' ';
constexpr int Control = 0x1F; // with Control a letter's lower bits are left

const std::map<int, KeyCode> controlKeys = {
    {'\r', KeyCode::Enter},
    {'\n', KeyCode::Enter},
    {'\t', KeyCode::Tab},
    {'\b', KeyCode::Backspace},
    {0x7F, KeyCode::Backspace},
    {'A' & Control, KeyCode::Home},
    {'C' & Control, KeyCode::Quit},
    {'E' & Control, KeyCode::End},
    {'L' & Control, KeyCode::Redraw},
    {'U' & Control, KeyCode::EraseAll},
    {'Z' & Control, KeyCode::Suspend},
};

const std::map<std::string, KeyCode> commonSequences = {
    {"[A", KeyCode::Up},
    {"OA", KeyCode::Up},
    {"[B", KeyCode::Down},
    {"OB", KeyCode::Down},
    {"[C", KeyCode::Right},
    {"OC", KeyCode::Right},
    {"[D", KeyCode::Left},
    {"OD", KeyCode::Left},
    {"[H", KeyCode::Home},
    {"OH", KeyCode::Home},
    {"[1~", KeyCode::Home},
    {"[7~", KeyCode::Home},
    {"[F", KeyCode::End},
    {"OF", KeyCode::End},
    {"[4~", KeyCode::End},
    {"[8~", KeyCode::End},
    {"[3~", KeyCode::Delete},
    {"[5~", KeyCode::PageUp},
    {"[6~", KeyCode::PageDown},
    {"[Z", KeyCode::BackTab},
    {"OP", KeyCode::Help},
    {"[11~", KeyCode::Help},
    {"[[A", KeyCode::Help},
    {"OS", KeyCode::ToggleList},
    {"[14~", KeyCode::ToggleList},
    {"[[D", KeyCode::ToggleList},
    {"[1;3A", KeyCode::ToggleList},
    {"[1;3B", KeyCode::ToggleList},
};

// Whether a byte is there for reading, after waiting so many milliseconds; false too if the waker has something.
bool WaitForByte(int waker, int milliseconds) {
  pollfd files[] = {{STDIN_FILENO, POLLIN, 0}, {waker, POLLIN, 0}};
  return poll(files, std::size(files), milliseconds) > 0 && files[0].revents != 0 && files[1].revents == 0;
}

// Nothing at the end of the input, as when the terminal has gone.
int ReadByte() {
  unsigned char byte = 0;
  return read(STDIN_FILENO, &byte, 1) == 1 ? byte : Nothing;
}

int NextByte() { return WaitForByte(Nothing, Patience) ? ReadByte() : Nothing; }

size_t LengthOfCharacter(int firstByte) {
  return firstByte >= 0xF0 ? 4 : firstByte >= 0xE0 ? 3 : firstByte >= 0xC0 ? 2 : 1;
}

// Whether a sequence behind Escape goes on.
bool IsIncomplete(const std::string &sequence) {
  if (sequence.size() == 1)
    return sequence == "[" || sequence == "O";
  const bool isFinal = sequence.back() >= '@' && sequence.back() <= '~';
  return sequence.front() == '[' && (!isFinal || sequence == "[[");
}

} // namespace

KeyReader::KeyReader(int itsWaker) : waker(itsWaker), sequences(commonSequences) {}

void KeyReader::Learn(const char *sequence, KeyCode code) {
  if (sequence != nullptr && sequence[0] == Escape && sequence[1] != '\0')
    sequences[sequence + 1] = code;
}

Key KeyReader::Read() {
  if (unread != Nothing)
    return Decode(std::exchange(unread, Nothing));
  if (!WaitForByte(waker, Forever))
    return {KeyCode::Redraw, {}};
  const int byte = ReadByte();
  return byte == Nothing ? Key{KeyCode::Quit, {}} : Decode(byte);
}

Key KeyReader::Decode(int byte) {
  if (byte == Escape)
    return DecodeSequence();
  if (const auto found = controlKeys.find(byte); found != controlKeys.end())
    return {found->second, {}};
  return byte < FirstCharacter ? Key{} : DecodeCharacter(byte);
}

// Escape itself, Alt and a letter, or a key that sends several bytes; those that nobody knows are nothing.
Key KeyReader::DecodeSequence() {
  std::string sequence;
  do {
    const int byte = NextByte();
    if (byte == Nothing)
      break;
    if (sequence.empty() && byte < FirstCharacter) {
      unread = byte;
      break;
    }
    sequence += static_cast<char>(byte);
  } while (!sequences.contains(sequence) && IsIncomplete(sequence));
  if (sequence.empty())
    return {KeyCode::Escape, {}};
  if (const auto found = sequences.find(sequence); found != sequences.end())
    return {found->second, {}};
  return sequence.size() == 1 ? Key{KeyCode::Mnemonic, sequence} : Key{};
}

Key KeyReader::DecodeCharacter(int firstByte) {
  std::string character(1, static_cast<char>(firstByte));
  while (character.size() < LengthOfCharacter(firstByte)) {
    const int byte = NextByte();
    if (byte == Nothing)
      return {};
    character += static_cast<char>(byte);
  }
  return {KeyCode::Character, character};
}

} // namespace terminal
