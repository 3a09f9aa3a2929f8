#pragma once

class Gallery;

void drawControls(Gallery &gallery);
void drawPopover(Gallery &gallery);
void drawQuitConfirmation(Gallery &gallery);
