// Races of lists that grow one by one, without Reserve, against std::vector.
#include <fieldscan/framework/array.h>
#include <fieldscan/polyline.h>

#include <vector>

#include "benchmarks/race.h"

namespace {

template <class Element, class Add>
void raceGrowth(Races& races, const std::string& row, const std::string& name, int count,
                const Element& element, Add add) {
    if (!races.wanted(row))
        return;
    const Contender ours = {name, [=] { require(add(element, count) == count, row); }};
    const Contender vector = {"std::vector", [=] {
                                  std::vector<Element> list;
                                  for (int i = 0; i < count; ++i)
                                      list.push_back(element);
                                  require(list.size() == static_cast<std::size_t>(count), row);
                              }};
    races.race(row, ours, {Peers{vector}});
}

}  // namespace

void raceGrowth(Races& races) {
    raceGrowth(races, "CArray::Add, a million points", "CArray", races.scaled(1000000),
               CXYZ(u"P1", 1.0, 2.0, 3.0), [](const CXYZ& point, int count) {
                   CArray<CXYZ, const CXYZ&> list;
                   for (int i = 0; i < count; ++i)
                       list.Add(point);
                   return list.GetSize();
               });
    raceGrowth(races, "AddVertex, 400 000 vertices", "CPolyline", races.scaled(400000),
               CVertex(1.0, 2.0, 3.0, 0), [](const CVertex& vertex, int count) {
                   CPolyline line;
                   for (int i = 0; i < count; ++i)
                       line.AddVertex(vertex);
                   return line.GetVertexSize();
               });
}
