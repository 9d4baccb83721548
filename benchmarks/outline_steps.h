// The rules of CCalcXYZHV::IsPolyInside step by step, with a copy of each vertex: the plain way.
#ifndef FIELDSCAN_BENCHMARKS_OUTLINE_STEPS_H
#define FIELDSCAN_BENCHMARKS_OUTLINE_STEPS_H

#include <fieldscan/polyline.h>

int isInsideByTheSteps(const CPolyline& outline, double h, double v);

#endif
