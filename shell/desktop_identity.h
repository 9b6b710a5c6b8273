// How the program names itself to the desktop.
#pragma once

namespace quillop {

// The desktop entry's id as the X11 window class and the Wayland app id (so docks and task
// switchers find the entry and its icon), the version, and the frame's icon that every
// window takes over. Call once the application object exists.
void takeDesktopIdentity();

}  // namespace quillop
