#!/usr/bin/env python3
"""Draws all pictures anew: each module writes the SVG files that pictures.txt names."""

import backgrounds
import characters
import controls
import events
import interface
import rooms
import testcard

for module in (characters, backgrounds, rooms, interface, controls, events, testcard):
    module.main()
