#pragma once

/// The standing object graph: everything that scenes find by name. It is built once a run and lives
/// until the manager releases all. The order is part of the design, since later steps name objects
/// of earlier ones, and what is built over another thing takes its pixels. Scenario thread; raises
/// what a missing picture raises.

namespace qv {

void createStandingObjects();
/// Only the screen's view with its surface and its click map, which need no file.
void createBareScreen();
/// The help window and its page.
void createHelpWindow();
/// The five sequences by which mouths move.
void createMouthSequences();

}  // namespace qv
