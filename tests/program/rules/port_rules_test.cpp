// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "program/rules/typed_log.h"

namespace vextrel_test {
namespace {

std::string NumUrls(std::string_view count) {
  return "GCGetNumPortURLs(hPort=0x0000000000000C10, 0x000000000000F000->(iNumURLs=" +
         std::string(count) + "))";
}

std::string Url(std::string_view url) {
  return "GCGetPortURL(hPort=0x0000000000000C10, 0x000000000000F000->(URL=" + std::string(url) +
         "), 0x000000000000F008->(iSize=30))";
}

TEST(PortRules, FindWhatTheyAreFor) {
  ExpectFindings({
      {"no description can be listed", "PORT-XML error",
       [](TypedLog& log) { log.OpenDevice().Here().Fails("-1020", NumUrls("0")).CloseAll(); }},
      {"an old producer", "",
       [](TypedLog& log) {
         log.OpenDevice().Fails("NOT_IMPLEMENTED", NumUrls("0")).Ok(Url("local:a.xml;8000;40"));
         log.CloseAll();
       }},
      {"the description can't be read", "PORT-XML error",
       [](TypedLog& log) {
         log.OpenDevice().Ok(Url("local:a.xml;8000;40")).Here();
         log.Fails("IO", PortAccess("GCReadPort", kPort, 0x8010)).CloseAll();
       }},
      {"a register can't be read", "",
       [](TypedLog& log) {
         log.OpenDevice().Ok(Url("local:a.xml;8000;40"));
         log.Ok(PortAccess("GCReadPort", kPort, 0x8000));
         log.Fails("IO", PortAccess("GCReadPort", kPort, 0x8040)).CloseAll();
       }},
      {"read each 10 ms", "PORT-POLL info",
       [](TypedLog& log) {
         log.OpenDevice().Here();
         for (int i = 0; i < 150; ++i) {
           log.Ok(PortAccess("GCReadPort", kPort, 0x100)).Pass(10);
         }
         log.CloseAll();
       }},
      {"read each 40 ms", "",
       [](TypedLog& log) {
         log.OpenDevice();
         for (int i = 0; i < 50; ++i) {
           log.Ok(PortAccess("GCReadPort", kPort, 0x100)).Pass(40);
         }
         log.CloseAll();
       }},
  });
}

}  // namespace
}  // namespace vextrel_test
