# Debian's own cross compiler and libraries: g++-aarch64-linux-gnu, and the libraries' packages with ":arm64".
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
