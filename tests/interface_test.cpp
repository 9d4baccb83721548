// What every class of the interface has.
#include <fieldscan/fieldscan.h>

#include <type_traits>

namespace {

// The hook for debugging.
template <class... Classes>
constexpr bool haveTrace() {
    return (std::is_same_v<decltype(&Classes::Trace), void (Classes::*)()> && ...);
}
static_assert(
    haveTrace<CXYZ, CXYF, CWPK, CRot, CCalcXYZHV, CDist, CCamera, CImage, CImgTS, COffset, CImgVH, CLeastSq,
              CHelmert, CPlaneAffine, CPolyline, CScanArea, CRange, CTSUnit, CGetAppPath, CRTCard>());

}  // namespace
