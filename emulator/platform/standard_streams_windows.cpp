#include <windows.h>
// windows.h comes first
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <array>
#include <cstdio>
#include <filesystem>

#include "emulator/platform/standard_streams.h"

namespace emulator {
namespace {

HANDLE StreamHandle(StandardStream stream) {
  return GetStdHandle(stream == StandardStream::kOutput ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

std::string Utf8(const wchar_t* text) {
  const std::u8string utf8 = std::filesystem::path(text).u8string();
  return std::string(utf8.begin(), utf8.end());
}

}  // namespace

void PrepareStandardStreams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  DWORD mode = 0;
  const HANDLE output = StreamHandle(StandardStream::kOutput);
  if (GetConsoleMode(output, &mode) != 0) SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool IsTerminal(StandardStream stream) {
  DWORD mode = 0;
  return GetConsoleMode(StreamHandle(stream), &mode) != 0;
}

std::size_t TerminalColumns(StandardStream stream) {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(StreamHandle(stream), &info) == 0) return 0;
  return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

std::vector<std::string> ProgramArguments(int, const char* const*) {
  int count = 0;
  wchar_t** const texts = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int index = 1; texts != nullptr && index < count; ++index) arguments.push_back(Utf8(texts[index]));
  LocalFree(texts);
  return arguments;
}

std::string ProgramFolder() {
  std::array<wchar_t, 32768> program{};
  if (GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())) == 0) return {};
  return Utf8(std::filesystem::path(program.data()).parent_path().c_str());
}

}  // namespace emulator
