// Everything the library exports.
#ifndef FIELDSCAN_FIELDSCAN_H
#define FIELDSCAN_FIELDSCAN_H

#include <fieldscan/attitude.h>
#include <fieldscan/camera.h>
#include <fieldscan/card.h>
#include <fieldscan/clock.h>
#include <fieldscan/distortion.h>
#include <fieldscan/framework/array.h>
#include <fieldscan/framework/file.h>
#include <fieldscan/framework/string.h>
#include <fieldscan/framework/types.h>
#include <fieldscan/helmert.h>
#include <fieldscan/image.h>
#include <fieldscan/instrument_camera.h>
#include <fieldscan/instrument_strings.h>
#include <fieldscan/key_sort.h>
#include <fieldscan/least_squares.h>
#include <fieldscan/message.h>
#include <fieldscan/panorama_files.h>
#include <fieldscan/point_files.h>
#include <fieldscan/points.h>
#include <fieldscan/polyline.h>
#include <fieldscan/precision.h>
#include <fieldscan/range.h>
#include <fieldscan/rotation.h>
#include <fieldscan/scan_area.h>
#include <fieldscan/scan_result_files.h>
#include <fieldscan/storage_paths.h>
#include <fieldscan/string_utilities.h>
#include <fieldscan/survey.h>
#include <fieldscan/unit_settings.h>

#endif
