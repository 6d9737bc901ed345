#!/usr/bin/env python3
"""Draws all pictures anew: each module writes the SVG files that pictures.txt names."""

import backgrounds
import characters
import interface
import testcard

for module in (characters, backgrounds, interface, testcard):
    module.main()
