// SPDX-License-Identifier: MIT
// A consumer that loads the producer named on its command line, makes its first calls, and ends.
#include <cstdlib>

#include "gentl/gentl.h"
#include "support/system.h"

int main(int argc, char** argv) {
  const vextrel_test::Module producer(argc > 1 ? argv[1] : "");
  if (!producer.IsLoaded()) {
    return EXIT_FAILURE;
  }
  TL_HANDLE handle = nullptr;
  const bool isDone = producer.Find<decltype(::GCInitLib)>("GCInitLib")() == GC_ERR_SUCCESS &&
                      producer.Find<decltype(::TLOpen)>("TLOpen")(&handle) == GC_ERR_SUCCESS;
  std::_Exit(isDone ? EXIT_SUCCESS : EXIT_FAILURE);
}
