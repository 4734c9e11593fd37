#include <windows.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <system_error>

#include "emulator/platform/supervised_process.h"

namespace emulator {
namespace {

constexpr DWORD kWatchMilliseconds = 20;
constexpr DWORD kFirstExceptionCode =
    0xC0000000U;  // an exit code from here on is an exception that nobody handled

[[noreturn]] void ThrowLastError(const char* what) {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

/// Owns one handle of the system.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (handle_ != nullptr) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  HANDLE Get() const { return handle_; }

 private:
  HANDLE handle_;
};

std::wstring FlagText() {
  const std::string_view flag = SupervisedProcess::kSupervisedFlag;
  return L" " + std::wstring(flag.begin(), flag.end()) + L" ";
}

/// The end of the program's own name in a command line.
std::size_t EndOfProgramName(const std::wstring& line) {
  if (!line.empty() && line.front() == L'"') {
    const std::size_t quote = line.find(L'"', 1);
    return quote == std::wstring::npos ? line.size() : quote + 1;
  }
  const std::size_t blank = line.find_first_of(L" \t");
  return blank == std::wstring::npos ? line.size() : blank;
}

/// The shared block's handle as a program that was started again finds it in its arguments; null in the first
/// one.
HANDLE InheritedBlock() {
  const std::wstring line = GetCommandLineW();
  const std::wstring flag = FlagText();
  const std::size_t start = EndOfProgramName(line);
  if (line.compare(start, flag.size(), flag) != 0) return nullptr;
  const unsigned long long value = std::wcstoull(line.c_str() + start + flag.size(), nullptr, 10);
  return reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(value));
}

HANDLE NewBlock(std::size_t bytes) {
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  const auto size = static_cast<unsigned long long>(bytes);
  const HANDLE block = CreateFileMappingW(INVALID_HANDLE_VALUE, &inheritable, PAGE_READWRITE,
                                          static_cast<DWORD>(size >> 32U), static_cast<DWORD>(size), nullptr);
  if (block == nullptr) ThrowLastError("CreateFileMapping");
  return block;
}

/// A job whose processes end with its last handle, that is with this process.
HANDLE NewJob() {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  if (job == nullptr) ThrowLastError("CreateJobObject");
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

PROCESS_INFORMATION StartAgain(HANDLE block) {
  std::wstring line = GetCommandLineW();
  line.insert(
      EndOfProgramName(line),
      FlagText() + std::to_wstring(static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(block))));
  std::array<wchar_t, 32768> program{};
  GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  for (const HANDLE handle : {startup.hStdInput, startup.hStdOutput, startup.hStdError}) {
    SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  }
  PROCESS_INFORMATION process{};
  if (CreateProcessW(program.data(), line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr,
                     &startup, &process) == 0) {
    ThrowLastError("CreateProcess");
  }
  return process;
}

std::string ExceptionName(DWORD code) {
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "0x%08lX", static_cast<unsigned long>(code));
  switch (code) {
    case EXCEPTION_ACCESS_VIOLATION:
      return std::string("access violation, ") + number.data();
    case EXCEPTION_STACK_OVERFLOW:
      return std::string("stack overflow, ") + number.data();
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
      return std::string("division by zero, ") + number.data();
    case EXCEPTION_ILLEGAL_INSTRUCTION:
      return std::string("illegal instruction, ") + number.data();
    default:
      return std::string("exception ") + number.data();
  }
}

ProcessEnd EndOf(HANDLE process) {
  DWORD code = 0;
  GetExitCodeProcess(process, &code);
  if (code >= kFirstExceptionCode) return {ProcessEnd::Kind::kCrashed, 0, ExceptionName(code)};
  return {ProcessEnd::Kind::kExited, static_cast<int>(code), {}};
}

}  // namespace

struct SupervisedProcess::State {
  explicit State(std::size_t bytes)
      : inherited(InheritedBlock()), mapping(inherited != nullptr ? inherited : NewBlock(bytes)) {
    block = MapViewOfFile(mapping.Get(), FILE_MAP_ALL_ACCESS, 0, 0, bytes);
    if (block == nullptr) ThrowLastError("MapViewOfFile");
  }
  ~State() { UnmapViewOfFile(block); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  HANDLE inherited;
  Handle mapping;
  void* block = nullptr;
};

SupervisedProcess::SupervisedProcess(std::size_t shared_bytes)
    : state_(std::make_unique<State>(shared_bytes)) {}

SupervisedProcess::~SupervisedProcess() = default;

void* SupervisedProcess::SharedBlock() const { return state_->block; }

ProcessEnd SupervisedProcess::Run(const std::function<int()>& body,
                                  const std::function<bool()>& should_stop) {
  if (state_->inherited != nullptr) {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);  // a crash ends the process and asks nobody
    const int exit_code = body();
    static_cast<void>(std::fflush(nullptr));
    std::_Exit(exit_code);
  }
  static_cast<void>(std::fflush(nullptr));
  const Handle job(NewJob());
  const PROCESS_INFORMATION started = StartAgain(state_->mapping.Get());
  const Handle process(started.hProcess);
  const Handle thread(started.hThread);
  AssignProcessToJobObject(job.Get(), process.Get());
  ResumeThread(thread.Get());
  while (WaitForSingleObject(process.Get(), kWatchMilliseconds) == WAIT_TIMEOUT) {
    if (!should_stop()) continue;
    TerminateProcess(process.Get(), EXIT_FAILURE);
    WaitForSingleObject(process.Get(), INFINITE);
    return {ProcessEnd::Kind::kStopped, 0, {}};
  }
  return EndOf(process.Get());
}

}  // namespace emulator
