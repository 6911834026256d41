# The release of log4cpp that is built.
set(VEXTREL_LOG4CPP_SHA256 696113659e426540625274a8b251052cc04306d8ee5c42a0c7639f39ca90c9d6)
set(VEXTREL_LOG4CPP_URL
  "https://downloads.sourceforge.net/project/log4cpp/log4cpp-1.1.x%20%28new%29/log4cpp-1.1/log4cpp-1.1.4.tar.gz")
