#pragma once

/// How an operation of the framework went; zero is success. The codes are global, as the applications use them.
typedef unsigned long result;
typedef unsigned char byte;

inline constexpr result E_SUCCESS = 0;
inline constexpr result E_FAILURE = 1;
inline constexpr result E_INVALID_ARG = 2;
inline constexpr result E_INVALID_STATE = 3;
inline constexpr result E_OUT_OF_MEMORY = 5;
inline constexpr result E_OUT_OF_RANGE = 6;
inline constexpr result E_NUM_FORMAT = 7;
inline constexpr result E_FILE_NOT_FOUND = 8;
inline constexpr result E_SECTION_NOT_FOUND = 9;
inline constexpr result E_KEY_NOT_FOUND = 10;
inline constexpr result E_OBJ_ALREADY_EXIST = 11;
inline constexpr result E_OBJ_NOT_FOUND = 12;
inline constexpr result E_IO = 13;
inline constexpr result E_UNSUPPORTED_FORMAT = 14;
inline constexpr result E_DEVICE_UNAVAILABLE = 15;

namespace Tizen {
namespace Base {}
}  // namespace Tizen
