#pragma once

namespace orv::test {

// Points the process's data, config, cache and runtime folders at a temporary folder of its own,
// removed when the process ends. Qt's test mode is not enough: every test process shares its one
// folder under the home, and ctest runs cases side by side, so two cases met in one tray, one
// journal lock and one set of quit files. Call it before anything asks for a standard path.
void usePrivateHomes();

} // namespace orv::test
