// The frame's menu commands as far as they need no window: which items are
// enabled and checked, the status line of each command, the commands that
// only call into the survey and the link, Reset Controller and the About
// text. The commands themselves are the rows of frame_command_table.h; the
// Windows front end dispatches WM_COMMAND through the same table.
#ifndef VELDOR_SHELL_FRAME_COMMANDS_H
#define VELDOR_SHELL_FRAME_COMMANDS_H

#define MAKER_NAME "Trevan Instruments"
#define MAKER_WEB_ADDRESS "https://www.trevan-instruments.example/"
#define HELP_DOCUMENT "VELDOR_v2.pdf"

// Commands from FirstFrameCommand to LastFrameCommand belong to the frame.
constexpr int FirstFrameCommand = 40002;
constexpr int LastFrameCommand = 40090;

// Every item of the frame's menu, in menu order.
extern const int FrameMenuIds[];
extern const int FrameMenuIdCount;

// 1 when the item is to be enabled in the current state, else 0.
int MenuItemEnabled(int id);
// 1 when the item is to carry a check mark (the three accessory modes).
int MenuItemChecked(int id);

// The status line a command writes, or nullptr for the commands that write
// none of their own. Show Listing and its sisters have "%s window opened".
const char* FrameCommandLogLine(int id);

// Runs a command of a CORE row of the table (Start, Stop, Take a Reading,
// Clear, the four Copy Calibration To Text File commands and Reset
// Controller). Returns 1 when id was one of them.
int RunCoreFrameCommand(int id);

// Configure > Reset Controller: asks first; on Yes sends "FR", writes the
// accessory settings back to their factory values and clears the modes.
void ResetController();

// The About box text, with the maker's lines.
void FormatAboutText(char* out, int size);
// The error text when the maker's web address cannot be opened.
void FormatWebsiteError(char* out, int size);

#endif
