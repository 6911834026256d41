// SPDX-License-Identifier: MIT
#include "backend/log4cpp_internals.h"

#include <PropertyConfiguratorImpl.hh>
#include <log4cpp/HierarchyMaintainer.hh>

namespace vextrel::backend {
namespace {

// Only a derived class can name the protected member, as &Hierarchy::_categoryMap.
class Hierarchy : public log4cpp::HierarchyMaintainer {
 public:
  static void ForgetCategories() { (getDefaultMaintainer().*(&Hierarchy::_categoryMap)).clear(); }
};

}  // namespace

void ApplyProperties(std::istream& properties) {
  log4cpp::PropertyConfiguratorImpl().doConfigure(properties);
}

void ForgetCategories() {
  Hierarchy::ForgetCategories();
}

}  // namespace vextrel::backend
