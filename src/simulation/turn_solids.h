#pragma once

#include "host/simulation.h"

namespace simulation {

/// Turns the solids of user models in the simulation's scene to the present orientation of their tools, about
/// a centre on the tool's station. Hosts before version 16 don't have the scene. A simulated tool that the
/// active document doesn't have is passed over, and so is a solid whose turret the scene doesn't have. Throws
/// Failure at the first call that the host refuses.
void turn_solids(const host::Simulation& m_Sim);

}  // namespace simulation
