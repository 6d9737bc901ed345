# Filled by the scene generator's floor.
