// SPDX-License-Identifier: MIT
#include "launching/process.h"

// The system's headers come first in what they need of each other.
// clang-format off
#include <windows.h>
// clang-format on

#include <atomic>
#include <memory>

#include "images/file_bytes.h"
#include "launching/failure.h"
#include "launching/quoting.h"
#include "launching/wide_windows.h"

namespace vextrel::program {
namespace {

constexpr std::size_t kMostOfACommandLine = 32767;
std::atomic<bool> wasInterrupted{false};
// Set when there's nothing left to clean up.
HANDLE done = nullptr;

BOOL WINAPI OnConsoleEvent(DWORD event) {
  wasInterrupted = true;
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
    // The system ends us when this returns.
    constexpr DWORD longEnough = 4000;
    WaitForSingleObject(done, longEnough);
  }
  return TRUE;
}

HANDLE AsHandle(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

std::wstring Block(const Variables& variables) {
  std::wstring block;
  for (const std::string& entry : variables.Entries()) {
    block += Wide(entry);
    block += L'\0';
  }
  block += L'\0';
  return block;
}

LaunchFailure NotStarted(const std::filesystem::path& file, DWORD error) {
  Fault why = WhyNotStarted(error);
  why.text = "'" + TextOf(file) + "' " + why.text;
  const bool isMissing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
  return {isMissing ? kExitNotFound : kExitNotExecutable, why};
}

// A job tells what the application has started. What wants to leave it may, as without us.
HANDLE MakeJob() {
  HANDLE job = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_BREAKAWAY_OK;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

}  // namespace

Process::Process(const StartRequest& request) {
  std::wstring line = Wide(QuotedCommandLine(request.arguments));
  if (line.size() >= kMostOfACommandLine) {
    throw NotStarted(request.file, ERROR_FILENAME_EXCED_RANGE);
  }
  std::wstring block = Block(request.variables);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  if (!request.isSilent) {
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  }
  PROCESS_INFORMATION information{};
  const DWORD flags = CREATE_UNICODE_ENVIRONMENT | CREATE_SUSPENDED;
  if (CreateProcessW(request.file.c_str(), line.data(), nullptr, nullptr,
                     request.isSilent ? FALSE : TRUE, flags, block.data(), nullptr, &startup,
                     &information) == 0) {
    throw NotStarted(request.file, GetLastError());
  }
  HANDLE job = MakeJob();
  AssignProcessToJobObject(job, information.hProcess);
  ResumeThread(information.hThread);
  CloseHandle(information.hThread);
  process_ = reinterpret_cast<std::intptr_t>(information.hProcess);
  group_ = reinterpret_cast<std::intptr_t>(job);
}

Process::~Process() {
  CloseHandle(AsHandle(process_));
  CloseHandle(AsHandle(group_));
}

int Process::WaitForEnd() {
  WaitForSingleObject(AsHandle(process_), INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(AsHandle(process_), &status);
  return static_cast<int>(status);
}

std::optional<int> Process::WaitFor(std::chrono::milliseconds limit) {
  if (WaitForSingleObject(AsHandle(process_), static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0) {
    return std::nullopt;
  }
  return WaitForEnd();
}

void Process::Kill() {
  TerminateProcess(AsHandle(process_), 1);
  WaitForSingleObject(AsHandle(process_), INFINITE);
}

bool Process::DescendantsGoOn() {
  JOBOBJECT_BASIC_ACCOUNTING_INFORMATION accounting{};
  return QueryInformationJobObject(AsHandle(group_), JobObjectBasicAccountingInformation,
                                   &accounting, sizeof accounting, nullptr) != 0 &&
         accounting.ActiveProcesses > 0;
}

void Process::WaitForDescendants() {
  constexpr DWORD step = 50;
  wasInterrupted = false;
  while (!wasInterrupted && DescendantsGoOn()) {
    Sleep(step);
  }
}

InterruptionGuard::InterruptionGuard() {
  wasInterrupted = false;
  done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

InterruptionGuard::~InterruptionGuard() {
  SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
  // The handler may still wait for it, so it stays open.
  SetEvent(done);
}

bool InterruptionGuard::WasInterrupted() noexcept {
  return wasInterrupted;
}

}  // namespace vextrel::program
