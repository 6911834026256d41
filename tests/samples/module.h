#ifndef VEXTREL_TESTS_SAMPLES_MODULE_H
#define VEXTREL_TESTS_SAMPLES_MODULE_H

#include <string>

// A dynamic library, loaded by its path and unloaded at the end. `Loaded` is false, and all symbols
// are null, if that failed.
class Module {
 public:
  explicit Module(const std::string& path);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  [[nodiscard]] bool Loaded() const { return module_ != nullptr; }
  [[nodiscard]] const std::string& Path() const { return path_; }

  using AnyFunction = void (*)();
  [[nodiscard]] AnyFunction Symbol(const char* name) const;

  // The function `name`, as a pointer of any function type.
  class Function {
   public:
    explicit Function(AnyFunction address) : address_(address) {}
    template <class F>
    operator F*() const {  // NOLINT(google-explicit-constructor): is what this class is for
      return reinterpret_cast<F*>(address_);
    }

   private:
    AnyFunction address_;
  };
  [[nodiscard]] Function operator[](const char* name) const { return Function(Symbol(name)); }

 private:
  std::string path_;
  void* module_;
};

// Whether the process has this module in memory.
[[nodiscard]] bool IsInMemory(const std::string& path);

// Sets an environment variable for its own lifetime.
class EnvironmentSetting {
 public:
  EnvironmentSetting(std::string name, const std::string& value);
  ~EnvironmentSetting();
  EnvironmentSetting(const EnvironmentSetting&) = delete;
  EnvironmentSetting& operator=(const EnvironmentSetting&) = delete;

 private:
  std::string name_;
};

#endif  // VEXTREL_TESTS_SAMPLES_MODULE_H
