#pragma once

#include <string>

/// Compares a picture with the golden one of that name in tests/goldens/. A little difference in antialiasing between
/// font and drawing libraries passes; a missing golden fails. On a failure the picture and a picture of the difference
/// are kept in BREVANT_TEST_OUTPUT. With BREVANT_RENEW_GOLDENS set in the environment the picture becomes the golden
/// one.
void ExpectGolden(const std::string& picturePath, const std::string& name);
