// Control ids of DisplayBox, ColoursBox, RecSettingsBox and PrefBox, shared
// by their templates and their code.
#ifndef VELDOR_RESOURCES_GENERAL_IDS_H
#define VELDOR_RESOURCES_GENERAL_IDS_H

// DisplayBox: three groups of radio buttons with consecutive ids.
#define IDC_DISPLAY_DEG 1701          // .. 1704 "Milliseconds"
#define IDC_DISPLAY_NORTH_SOUTH 1711  // 1712 "+/-"
#define IDC_DISPLAY_READING_0 1721    // .. 1724 "Raw"

// ColoursBox: the three breaks from top to bottom and the dot size, each an
// edit and its spin control.
#define IDC_COLOURS_BREAK1 1731
#define IDC_COLOURS_BREAK2 1732
#define IDC_COLOURS_BREAK3 1733
#define IDC_COLOURS_DOT_SIZE 1734
#define IDC_COLOURS_SPIN1 1741
#define IDC_COLOURS_SPIN2 1742
#define IDC_COLOURS_SPIN3 1743
#define IDC_COLOURS_SPIN_DOT 1744

// RecSettingsBox
#define IDC_RECSET_TIME 1751  // 1752 "Distance"
#define IDC_RECSET_SECONDS 1753
#define IDC_RECSET_METERS 1754
#define IDC_RECSET_AUTOSAVE 1755
#define IDC_RECSET_MINUTES 1756
#define IDC_RECSET_AVERAGING 1757
#define IDC_RECSET_LABEL1 1761  // .. 1764 "Ch 4"

// PrefBox: for Listing, Plot and Chart a font list, a size edit and its spin.
#define IDC_PREF_FONT_LISTING 1771
#define IDC_PREF_FONT_PLOT 1772
#define IDC_PREF_FONT_CHART 1773
#define IDC_PREF_SIZE_LISTING 1774
#define IDC_PREF_SIZE_PLOT 1775
#define IDC_PREF_SIZE_CHART 1776
#define IDC_PREF_SPIN_LISTING 1777
#define IDC_PREF_SPIN_PLOT 1778
#define IDC_PREF_SPIN_CHART 1779
#define IDC_PREF_FULL_PATH 1781
#define IDC_PREF_LOAD_STORED 1782
#define IDC_PREF_CHECK_STORED 1783
#define IDC_PREF_PLOT_POSITION 1784

#define IDC_GENERAL_HELP 1790

#endif
