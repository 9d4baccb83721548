// What is wrong with a scan area, in words for the operator.
#ifndef TOOLS_SCAN_AREA_FAULTS_H
#define TOOLS_SCAN_AREA_FAULTS_H

#include <fieldscan/scan_area.h>

#include <string>

// Both are empty for an area without fault. Vertices count from 1.
std::string outlineFault(const CScanArea& area);
// Of counts, shots, corners, and of the outline where the area has one.
std::string areaFault(const CScanArea& area);

#endif
