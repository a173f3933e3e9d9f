#pragma once

/// The version of this program.

namespace lab {

/// "1.0.0", that of the project.
const char* labVersion();

}  // namespace lab
