// SPDX-License-Identifier: MIT
#include "program/page/page_data.h"

#include "images/file_bytes.h"
#include "launching/system.h"
#include "program/small_log.h"

namespace vextrel_test {

std::string PageOf(std::string_view log) {
  const ScratchFile file(log);
  const std::string page = file.Beside("", "page.html");
  const ProgramResult result = RunVextrel({"report", "--html", page, file.Path()});
  return result.status == 0
             ? vextrel::program::ReadBytes(vextrel::program::PathOf(page)).value_or("")
             : "";
}

nlohmann::json DataOf(std::string_view page) {
  constexpr std::string_view front = R"(<script type="application/json" id="data">)";
  const std::size_t begin = page.find(front) + front.size();
  return nlohmann::json::parse(page.substr(begin, page.find("</script>", begin) - begin));
}

}  // namespace vextrel_test
