// SPDX-License-Identifier: MIT
#include "producer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace grab {
namespace {

constexpr std::array<std::pair<GC_ERROR, const char*>, 16> kErrorNames{{
    {GC_ERR_ERROR, "GC_ERR_ERROR"},
    {GC_ERR_NOT_INITIALIZED, "GC_ERR_NOT_INITIALIZED"},
    {GC_ERR_NOT_IMPLEMENTED, "GC_ERR_NOT_IMPLEMENTED"},
    {GC_ERR_RESOURCE_IN_USE, "GC_ERR_RESOURCE_IN_USE"},
    {GC_ERR_ACCESS_DENIED, "GC_ERR_ACCESS_DENIED"},
    {GC_ERR_INVALID_HANDLE, "GC_ERR_INVALID_HANDLE"},
    {GC_ERR_INVALID_ID, "GC_ERR_INVALID_ID"},
    {GC_ERR_NO_DATA, "GC_ERR_NO_DATA"},
    {GC_ERR_INVALID_PARAMETER, "GC_ERR_INVALID_PARAMETER"},
    {GC_ERR_IO, "GC_ERR_IO"},
    {GC_ERR_TIMEOUT, "GC_ERR_TIMEOUT"},
    {GC_ERR_ABORT, "GC_ERR_ABORT"},
    {GC_ERR_INVALID_BUFFER, "GC_ERR_INVALID_BUFFER"},
    {GC_ERR_NOT_AVAILABLE, "GC_ERR_NOT_AVAILABLE"},
    {GC_ERR_INVALID_ADDRESS, "GC_ERR_INVALID_ADDRESS"},
    {GC_ERR_CUSTOM_ID, "GC_ERR_CUSTOM_ID"},
}};

[[nodiscard]] std::string ErrorText(GC_ERROR error) {
  const auto* const found =
      std::ranges::find(kErrorNames, error, &std::pair<GC_ERROR, const char*>::first);
  const char* const name = found != kErrorNames.end() ? found->second : "unknown error";
  return std::string(name) + " (" + std::to_string(error) + ")";
}

[[nodiscard]] std::string WithoutEnd(std::string text, std::string_view unwanted) {
  text.erase(text.find_last_not_of(unwanted) + 1);
  return text;
}

template <typename T>
[[nodiscard]] std::uint64_t Decode(const void* bytes) {
  T value{};
  std::memcpy(&value, bytes, sizeof value);
  return static_cast<std::uint64_t>(value);
}

}  // namespace

std::string AnyFunction::Describe(GC_ERROR result) const {
  std::string description = std::string(name_) + " failed with " + ErrorText(result);
  std::array<char, 1024> reason{};
  std::size_t size = reason.size();
  GC_ERROR lastError = GC_ERR_SUCCESS;
  if (producer_.GCGetLastError.Try(&lastError, reason.data(), &size) != GC_ERR_SUCCESS ||
      lastError != result) {
    return description;
  }
  reason.back() = '\0';
  const std::string text = WithoutEnd(reason.data(), ".\n");
  return text.empty() ? description : description + ": " + text;
}

void* AnyFunction::CheckHandle(void* handle) const {
  if (handle == nullptr) {
    throw Error(std::string(name_) + " succeeded but gave no handle.");
  }
  return handle;
}

void* AnyFunction::Find(Need need) const {
  void* const address = producer_.loaded_.Find(name_);
  if (address == nullptr && need == Need::Required) {
    throw Error(std::string("The producer does not export the function ") + name_ + ".");
  }
  return address;
}

bool AnyFunction::Check(GC_ERROR result) const {
  if (result == GC_ERR_NOT_IMPLEMENTED || result == GC_ERR_NOT_AVAILABLE) {
    return false;
  }
  if (result != GC_ERR_SUCCESS) {
    Fail(result);
  }
  return true;
}

void AnyFunction::Fail(GC_ERROR result) const {
  throw Error(Describe(result) + ".");
}

// Asks for the size first, then for the text.
std::optional<std::string> AnyFunction::ReadText(const InfoQuery& query) const {
  INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
  std::size_t size = 0;
  if (!Check(query(&type, nullptr, &size))) {
    return std::nullopt;
  }
  std::vector<char> buffer(size + 1);  // Ends with NUL even if the producer's text does not.
  if (!Check(query(&type, buffer.data(), &size))) {
    return std::nullopt;
  }
  return buffer.data();
}

std::optional<std::uint64_t> AnyFunction::ReadNumber(const InfoQuery& query) const {
  INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
  std::uint64_t bytes = 0;
  std::size_t size = sizeof bytes;
  if (!Check(query(&type, &bytes, &size))) {
    return std::nullopt;
  }
  switch (type) {
    case INFO_DATATYPE_BOOL8:
      return Decode<std::uint8_t>(&bytes);
    case INFO_DATATYPE_INT16:
      return Decode<std::int16_t>(&bytes);
    case INFO_DATATYPE_UINT16:
      return Decode<std::uint16_t>(&bytes);
    case INFO_DATATYPE_INT32:
      return Decode<std::int32_t>(&bytes);
    case INFO_DATATYPE_UINT32:
      return Decode<std::uint32_t>(&bytes);
    default:
      return bytes;
  }
}

std::string AnyFunction::ReadId(const InfoQuery& query) const {
  const std::optional<std::string> text = ReadText(query);
  if (!text) {
    throw Error(std::string(name_) + " is not implemented by the producer.");
  }
  return *text;
}

Producer::Producer(const Library& library) : loaded_(library) {
  std::string exception;
  try {
    GCInitLib();
    return;
  } catch (const Error&) {
    throw;
  } catch (const std::exception& thrown) {
    // The producer's own exception has to be gone before its code is unloaded.
    exception = thrown.what();
  }
  throw Error("GCInitLib ended with an exception: " + exception + ".");
}

std::string OrDash(const std::optional<std::string>& text) {
  return text.value_or("-");
}

std::string OrDash(const std::optional<std::uint64_t>& number) {
  return number ? std::to_string(*number) : "-";
}

#if defined(_WIN32)

Library::Library(const std::filesystem::path& file) {
  SetErrorMode(SEM_FAILCRITICALERRORS);  // No message box for a damaged file.
  // A producer's own libraries are in its folder.
  const std::filesystem::path absolute = std::filesystem::absolute(file).make_preferred();
  handle_ = LoadLibraryExW(absolute.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (handle_ == nullptr) {
    const DWORD code = GetLastError();
    const std::string reason = std::system_category().message(static_cast<int>(code));
    throw Error("Cannot load " + PathText(file) + ": " + WithoutEnd(reason, ". \r\n") +
                " (system error " + std::to_string(code) + ").");
  }
}

Library::~Library() {
  FreeLibrary(static_cast<HMODULE>(handle_));
}

void* Library::Find(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

std::filesystem::path PathFromText(const char* text) {
  const int length = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), length);
  return wide.c_str();
}

std::string PathText(const std::filesystem::path& path) {
  const int length = WideCharToMultiByte(CP_ACP, 0, path.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_ACP, 0, path.c_str(), -1, text.data(), length, nullptr, nullptr);
  return text.c_str();
}

#else

Library::Library(const std::filesystem::path& file) {
  // The loader looks for a bare name in its own search path.
  const std::string absolute = std::filesystem::absolute(file).string();
  handle_ = dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    const char* const error = dlerror();
    std::string_view reason = error != nullptr ? error : "unknown reason";
    if (reason.starts_with(absolute + ": ")) {
      reason.remove_prefix(absolute.size() + 2);
    }
    throw Error("Cannot load " + PathText(file) + ": " + std::string(reason) + ".");
  }
}

Library::~Library() {
  dlclose(handle_);
}

void* Library::Find(const char* name) const {
  return dlsym(handle_, name);
}

std::filesystem::path PathFromText(const char* text) {
  return text;
}

std::string PathText(const std::filesystem::path& path) {
  return path.string();
}

#endif

}  // namespace grab
