// Preset and bank files: open, transfer whole images, close; split a path.
#pragma once
