// SPDX-License-Identifier: MIT
#include "doctor/log_config.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <optional>

#include "images/file_bytes.h"
#include "launching/system.h"
#include "launching/variables.h"

namespace vextrel::program {
namespace {

constexpr int kInfo = 600;
constexpr int kNotSet = 800;

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  return begin == std::string_view::npos
             ? std::string_view()
             : text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

// Nothing for a name that log4cpp doesn't know.
std::optional<int> PriorityOf(std::string_view name) {
  constexpr std::array<std::pair<std::string_view, int>, 10> names = {{{"EMERG", 0},
                                                                       {"FATAL", 0},
                                                                       {"ALERT", 100},
                                                                       {"CRIT", 200},
                                                                       {"ERROR", 300},
                                                                       {"WARN", 400},
                                                                       {"NOTICE", 500},
                                                                       {"INFO", kInfo},
                                                                       {"DEBUG", 700},
                                                                       {"NOTSET", kNotSet}}};
  for (const auto& [known, value] : names) {
    if (known == name) {
      return value;
    }
  }
  int value = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), value);
  return error == std::errc{} && end == name.data() + name.size() ? std::optional<int>(value)
                                                                  : std::nullopt;
}

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> list) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

// Its class names may have other names in front, which don't count.
std::string_view LastPart(std::string_view name) {
  return name.substr(name.find_last_of('.') + 1);
}

class ConfigReader {
 public:
  explicit ConfigReader(const Variables& variables) : variables_(variables) {}

  LogConfig Read(std::string_view text) {
    ReadLines(text);
    // The module gives up at the first reference, and log4cpp at the first mistake.
    ReadAppenders();
    ReadCategories();
    return std::move(config_);
  }

 private:
  struct Property {
    std::string value;
    std::size_t line = 0;
  };
  using Properties = std::map<std::string, Property, std::less<>>;

  void Fail(std::size_t line, std::string text, std::string remedy) {
    config_.problems.push_back({line, true, std::move(text), std::move(remedy)});
  }
  void Note(std::size_t line, std::string text, std::string remedy) {
    config_.problems.push_back({line, false, std::move(text), std::move(remedy)});
  }

  void ReadLines(std::string_view text) {
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
      Fail(1, "the file is in UTF-16, which the module can't read", "save it as plain text");
      return;
    }
    const bool hasMark = text.starts_with("\xEF\xBB\xBF");
    for (std::size_t number = 1; !text.empty(); ++number) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      ReadLine(text.substr(0, end), number, hasMark && number == 1);
      text.remove_prefix(std::min(end + 1, text.size()));
    }
  }

  void ReadLine(std::string_view line, std::size_t number, bool hasMark) {
    std::string missing;
    if (!line.starts_with('#') && !ExpandReference(line, variables_, &missing)) {
      Fail(number, fmt::format("$({}) can't be replaced, so the module refuses the file", missing),
           fmt::format("set {}, or write ${{{}}}", missing, missing));
    }
    const std::string_view command = line.substr(0, line.find('#'));
    const std::size_t equals = command.find('=');
    if (equals == std::string_view::npos) {
      if (!Trimmed(command).empty() && !hasMark) {
        Note(number, fmt::format("'{}' has no '='", Trimmed(command)), "correct it");
      }
      return;
    }
    if (hasMark) {
      Fail(number, "a byte order mark is in front, which becomes a part of the first name",
           "save the file without it");
    }
    std::string name(Trimmed(command.substr(0, equals)));
    if (name.starts_with("log4cpp.") || name.starts_with("log4j.")) {
      name.erase(0, name.find('.') + 1);
    }
    const std::string value = Substituted(Trimmed(command.substr(equals + 1)), number);
    if (!properties_.emplace(name, Property{value, number}).second) {
      Note(number, fmt::format("'{}' was set before, and the first one counts", name),
           "remove one");
    }
  }

  std::string Substituted(std::string_view text, std::size_t number) {
    std::string result;
    for (;;) {
      const std::size_t begin = text.find("${");
      const std::size_t end = begin == std::string_view::npos ? begin : text.find('}', begin);
      if (end == std::string_view::npos) {
        return result.append(text);
      }
      result += text.substr(0, begin);
      const std::string_view name = text.substr(begin + 2, end - begin - 2);
      if (const std::optional<std::string> value = variables_.Find(name)) {
        result += *value;
      } else if (const auto property = properties_.find(name); property != properties_.end()) {
        result += property->second.value;
      } else {
        Fail(number, fmt::format("{} isn't set, so ${{{}}} becomes nothing", name, name),
             fmt::format("set {}, or write a path", name));
      }
      text.remove_prefix(end + 1);
    }
  }

  [[nodiscard]] const Property* Find(const std::string& name) const {
    const auto found = properties_.find(name);
    return found == properties_.end() ? nullptr : &found->second;
  }

  void ReadAppenders() {
    constexpr std::string_view prefix = "appender.";
    for (const auto& [key, property] : properties_) {
      if (!key.starts_with(prefix)) {
        continue;
      }
      const std::size_t dot = key.find('.', prefix.size());
      const std::string name = key.substr(prefix.size(), dot - prefix.size());
      const std::string whole = std::string(prefix) + name;
      if (dot == std::string::npos) {
        appenders_.push_back(name);
        ReadAppender(name, property);
      } else if (Find(whole) == nullptr) {
        Fail(property.line, fmt::format("'{}' has options, but '{}=' is missing", name, whole),
             "name its type, such as FileAppender");
      } else if (!IsOneOf(key.substr(dot + 1),
                          {"target", "fileName", "append", "maxFileSize", "maxBackupIndex",
                           "maxDaysKeep", "threshold", "layout", "layout.ConversionPattern",
                           "syslogName", "syslogHost", "facility", "portNumber", "source"})) {
        Note(property.line, fmt::format("log4cpp doesn't know '{}'", key), "check its spelling");
      }
    }
  }

  void ReadAppender(const std::string& name, const Property& appender) {
    const std::string_view type = LastPart(appender.value);
    const std::string prefix = "appender." + name;
    const bool isFile =
        IsOneOf(type, {"FileAppender", "RollingFileAppender", "DailyRollingFileAppender"});
    const bool isWindows = kSystemName == "Windows";
    if (!isFile && !IsOneOf(type, {"ConsoleAppender", "SyslogAppender", "AbortAppender"}) &&
        !(isWindows ? IsOneOf(type, {"Win32DebugAppender", "NTEventLogAppender"})
                    : type == "LocalSyslogAppender")) {
      Fail(appender.line, fmt::format("log4cpp has no '{}' on {}", type, kSystemName),
           "use a FileAppender, a RollingFileAppender or a ConsoleAppender");
      return;
    }
    if (isFile) {
      const Property* file = Find(prefix + ".fileName");
      if (file == nullptr) {
        Fail(appender.line,
             fmt::format("'{}.fileName' is missing: the log goes to 'foobar' in the working folder",
                         prefix),
             "name the file; mind the spelling");
      } else {
        config_.files.push_back(file->value);
      }
    }
    if (const Property* target = Find(prefix + ".target");
        type == "ConsoleAppender" && target != nullptr) {
      std::string lower = target->value;
      std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
      });
      if (!IsOneOf(lower, {"stdout", "stderr"})) {
        Fail(target->line, fmt::format("'{}' is no target of a console", target->value),
             "write stdout or stderr");
      }
    }
    const Property* layout = Find(prefix + ".layout");
    if (layout == nullptr && !IsOneOf(type, {"AbortAppender", "NTEventLogAppender"})) {
      Fail(appender.line, fmt::format("'{}.layout' is missing", prefix), "write PatternLayout");
    } else if (layout != nullptr && !IsOneOf(LastPart(layout->value),
                                             {"PatternLayout", "BasicLayout", "SimpleLayout"})) {
      Fail(layout->line,
           fmt::format("log4cpp has no layout '{}' for a property file", layout->value),
           "write PatternLayout");
    }
    if (const Property* threshold = Find(prefix + ".threshold");
        threshold != nullptr && !threshold->value.empty() && !PriorityOf(threshold->value)) {
      Fail(threshold->line, fmt::format("'{}' is no priority", threshold->value), "write INFO");
    }
  }

  void ReadCategories() {
    const Property* root = Find("rootCategory");
    if (root == nullptr) {
      Fail(0, "has no rootCategory, so the module refuses it",
           "write a line like 'rootCategory=INFO, file'");
      return;
    }
    std::optional<int> priority = ReadCategory(*root);
    if (priority == kNotSet) {
      Fail(root->line, "rootCategory has no priority", "write INFO in front of the appender");
      return;
    }
    for (const auto& [key, property] : properties_) {
      if (key.starts_with("category.")) {
        const std::optional<int> own = ReadCategory(property);
        priority = key == "category.Vextrel" && own != kNotSet ? own : priority;
      }
    }
    config_.logsCalls = priority >= kInfo;
    if (priority && !config_.logsCalls) {
      Note(root->line, "calls are logged at INFO, which is left out here",
           "write INFO if you want them");
    }
  }

  // Returns the priority, or nothing if there's something wrong.
  std::optional<int> ReadCategory(const Property& category) {
    std::string_view rest = category.value;
    const std::string_view name = Trimmed(rest.substr(0, rest.find(',')));
    const std::optional<int> priority =
        name.empty() ? std::optional<int>(kNotSet) : PriorityOf(name);
    if (!priority) {
      Fail(category.line, fmt::format("'{}' is no priority", name), "write INFO");
    }
    while (rest.find(',') != std::string_view::npos) {
      rest.remove_prefix(rest.find(',') + 1);
      const std::string appender(Trimmed(rest.substr(0, rest.find(','))));
      if (std::find(appenders_.begin(), appenders_.end(), appender) == appenders_.end()) {
        Fail(category.line, fmt::format("there's no appender '{}'", appender),
             fmt::format("write a line like 'appender.{}=FileAppender'", appender));
      }
    }
    return priority;
  }

  const Variables& variables_;
  LogConfig config_;
  Properties properties_;
  std::vector<std::string> appenders_;
};

}  // namespace

LogConfig ReadLogConfig(std::string_view text, const Variables& variables) {
  return ConfigReader(variables).Read(text);
}

Fault FaultOf(const ConfigProblem& problem, const std::filesystem::path& file) {
  const std::string place =
      problem.line == 0
          ? fmt::format("the configuration '{}'", TextOf(file))
          : fmt::format("the configuration '{}', line {}:", TextOf(file), problem.line);
  return {place + " " + problem.text, problem.remedy};
}

std::optional<Fault> FaultOfConfigFile(const std::filesystem::path& file) {
  if (ReadBytes(file, 1)) {
    return std::nullopt;
  }
  std::error_code error;
  const char* const why = std::filesystem::is_directory(file, error) ? "is a folder"
                          : std::filesystem::exists(file, error)     ? "can't be read"
                                                                     : "isn't there";
  return Fault{fmt::format("the configuration '{}' {}", TextOf(file), why),
               fmt::format("name a property file with --config, or in {}", kConfigVariable)};
}

}  // namespace vextrel::program
