# SPDX-License-Identifier: MIT
# The libraries that are built from upstream release archives: the version, and the archive's
# SHA-256 and URL.
set(VEXTREL_LOG4CPP_VERSION 1.1.4)
set(VEXTREL_LOG4CPP_SHA256 696113659e426540625274a8b251052cc04306d8ee5c42a0c7639f39ca90c9d6)
set(VEXTREL_LOG4CPP_URL
  "https://downloads.sourceforge.net/project/log4cpp/log4cpp-1.1.x%20%28new%29/log4cpp-1.1/log4cpp-1.1.4.tar.gz")

set(VEXTREL_GOOGLETEST_VERSION 1.12.1)
set(VEXTREL_GOOGLETEST_SHA256 81964fe578e9bd7c94dfdb09c8e4d6e6759e19967e397dbea48d1c10e45d0df2)
set(VEXTREL_GOOGLETEST_URL
  "https://github.com/google/googletest/archive/refs/tags/release-1.12.1.tar.gz")

set(VEXTREL_BENCHMARK_VERSION 1.7.1)
set(VEXTREL_BENCHMARK_SHA256 6430e4092653380d9dc4ccb45a1e2dc9259d581f4866dc0759713126056bc1d7)
set(VEXTREL_BENCHMARK_URL
  "https://github.com/google/benchmark/archive/refs/tags/v1.7.1.tar.gz")

set(VEXTREL_JSON_VERSION 3.11.2)
set(VEXTREL_JSON_SHA256 d69f9deb6a75e2580465c6c4c5111b89c4dc2fa94e3a85fcd2ffcd9a143d9273)
set(VEXTREL_JSON_URL
  "https://github.com/nlohmann/json/archive/refs/tags/v3.11.2.tar.gz")
