# What is built from its upstream release archive: version, the archive's SHA-256, where upstream
# has it, and the name under which it lies in the cache folder.
set(VEXTREL_LOG4CPP_VERSION 1.1.4)
set(VEXTREL_LOG4CPP_SHA256 696113659e426540625274a8b251052cc04306d8ee5c42a0c7639f39ca90c9d6)
set(VEXTREL_LOG4CPP_URL
  "https://downloads.sourceforge.net/project/log4cpp/log4cpp-1.1.x%20%28new%29/log4cpp-1.1/log4cpp-1.1.4.tar.gz")

set(VEXTREL_BENCHMARK_VERSION 1.7.1)
set(VEXTREL_BENCHMARK_SHA256 6430e4092653380d9dc4ccb45a1e2dc9259d581f4866dc0759713126056bc1d7)
set(VEXTREL_BENCHMARK_URL
  "https://github.com/google/benchmark/archive/refs/tags/v1.7.1.tar.gz")
