#pragma once

class Gallery;

void drawControls(Gallery &gallery);
void drawPopover(Gallery &gallery);
