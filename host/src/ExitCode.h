// The exit codes of the program.
#pragma once

namespace vyrHost {

enum ExitCode { EXIT_CODE_OK = 0, EXIT_CODE_SCRIPT_ERROR = 1, EXIT_CODE_USAGE = 2, EXIT_CODE_NO_GRAPHICS = 3 };

} // namespace vyrHost
