// Panorama information and exterior orientation files: a version line, then one value a line.
#include <fieldscan/panorama_files.h>
#include <fieldscan/scan_result_files.h>

#include <initializer_list>

#include "files/value_lines.h"
#include "platform/framework/rewritten_file.h"

using namespace fieldscan;

namespace {

const char kPanoramaVersion[] = "KVX4NP_PANORAMAINFO_FILEVER1.0";
const char kExteriorVersion[] = "KZ5_EXT_FILEVER1.0";

struct NamedValue {
    double value;
    const char* comment;  // ends with the carriage return
};

int writeValues(const unsigned short* path, const char* version, std::initializer_list<NamedValue> values) {
    return writeNewFile(path, [&](LineWriter& lines) {
        lines.text() += version;
        lines.text() += '\r';
        lines.endLine();
        for (const NamedValue& each : values)
            appendReal(lines, each.value, each.comment);
    });
}

int readValues(const unsigned short* path, const char* version, std::initializer_list<double*> values) {
    return zeroIfOutOfMemory([&] {
        CFile file;
        if (!file.Open(path, CFile::modeRead) || ReadHeader(&file, version) != 1)
            return 0;
        double value = 0.0;  // stays where a line is no number: the value of the line before is repeated
        for (double* each : values) {
            if (!readReal(file, value))
                return 0;
            *each = value;
        }
        return 1;
    });
}

}  // namespace

int KVX4NP_WritePanoramaInfo(const unsigned short* path, double vertTopLeft, double horzTopLeft,
                             double vertResolution, double horzResolution) {
    return writeValues(path, kPanoramaVersion,
                       {{vertTopLeft, "\t// Vert Angle of Top-Left Corner[deg]\r"},
                        {horzTopLeft, "\t// Horz Angle of Top-Left Corner[deg]\r"},
                        {vertResolution, "\t// Vert Angle Resolution[deg]\r"},
                        {horzResolution, "\t// Horz Angle Resolution[deg]\r"}});
}

int KVX4NP_ReadPanoramaInfo(const unsigned short* path, double& vertTopLeft, double& horzTopLeft,
                            double& vertResolution, double& horzResolution) {
    return readValues(path, kPanoramaVersion, {&vertTopLeft, &horzTopLeft, &vertResolution, &horzResolution});
}

int WriteExtFile(const unsigned short* path, double x0, double y0, double z0, double omega, double phi,
                 double kappa) {
    return writeValues(path, kExteriorVersion,
                       {{x0, "\t// X0[m]\r"},
                        {y0, "\t// Y0[m]\r"},
                        {z0, "\t// Z0[m]\r"},
                        {omega, "\t// omega[deg]\r"},
                        {phi, "\t// phi[deg]\r"},
                        {kappa, "\t// kappa[deg]\r"}});
}

int ReadExtFile(const unsigned short* path, double& x0, double& y0, double& z0, double& omega, double& phi,
                double& kappa) {
    return readValues(path, kExteriorVersion, {&x0, &y0, &z0, &omega, &phi, &kappa});
}
