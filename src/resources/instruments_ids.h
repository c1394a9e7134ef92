// Control ids of the instrument dialogs (PortsBox, GpsDiffBox, AR3000aBox,
// TzrBox), shared by their templates and their code.
#ifndef VELDOR_RESOURCES_INSTRUMENTS_IDS_H
#define VELDOR_RESOURCES_INSTRUMENTS_IDS_H

#define IDC_INSTR_HELP 1401
// PortsBox
#define IDC_PORTS_PORT 1411
// GpsDiffBox
#define IDC_GPSDIFF_ENABLE 1421
#define IDC_GPSDIFF_BAUD 1422
// AR3000aBox: per channel c (0..3) the frequency, mode and attenuator
#define IDC_AR_ENABLE 1431
#define IDC_AR_BAUD 1432
#define IDC_AR_FREQ 1440  // + c
#define IDC_AR_MODE 1450  // + c
#define IDC_AR_ATT 1460   // + c
// TzrBox
#define IDC_TZR_ENABLE 1471
#define IDC_TZR_INITIAL 1472
#define IDC_TZR_INITIAL_SPIN 1473
#define IDC_TZR_COUNT 1474
#define IDC_TZR_COUNT_SPIN 1475
#define IDC_TZR_INCREMENT 1476
#define IDC_TZR_SET_NOW 1477
#define IDC_TZR_INPUT 1478
#define IDC_TZR_INPUT_SPIN 1479

#endif
