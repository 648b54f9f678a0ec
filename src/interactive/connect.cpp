#include <cstdlib>

#include "lumo/crv_connect.h"
#include "lumo/crv_navigation.h"
#include "tav/math/rect.h"

namespace {

/// The candidate index of a choice; -1 when it is not made.
int Choice(const CRV_CONNECTINFO* record, int which) {
  if (record == nullptr) return -1;
  return which == 1 ? record->first : which == 2 ? record->second : -1;
}

void StoreOpenEnds(CRV_CONNECTINFO& record, const tagPOINT* points, const NODETYPE* types, int count) {
  int stored = 0;
  const auto store = [&](int i) {
    if (stored == record.candidateCount) return;  // damaged arrays may hold more ends than starts
    record.points[stored] = points[i];
    record.nodes[stored++] = i;
  };
  for (int i = 0; i < count; ++i) {
    if (types[i].IsClosed()) continue;
    if (types[i].IsMove()) store(i);
    if (i + 1 == count || types[i + 1].IsMove()) store(i);
  }
}

}  // namespace

CRV_CONNECTINFO* CRV_ConnectInfoConstruct(const tagPOINT* points, const NODETYPE* types, int count) noexcept {
  auto* const record = static_cast<CRV_CONNECTINFO*>(std::malloc(sizeof(CRV_CONNECTINFO)));
  if (record == nullptr) return nullptr;
  *record = {nullptr, 0, -1, -1, nullptr};
  const int open = points == nullptr ? 0 : CRV_HowManyOpenSubpaths(types, count);
  if (open == 0) return record;
  // Zeroed, so that a candidate of a damaged array that is never stored is still a defined one.
  const std::size_t candidates = 2 * static_cast<std::size_t>(open);
  record->points = static_cast<tagPOINT*>(std::calloc(candidates, sizeof(tagPOINT)));
  record->nodes = static_cast<int*>(std::calloc(candidates, sizeof(int)));
  if (open > 0x3FFFFFFF || !record->points || !record->nodes) {
    CRV_ConnectInfoDestruct(record);
    return nullptr;
  }
  record->candidateCount = 2 * open;
  StoreOpenEnds(*record, points, types, count);
  return record;
}

void CRV_ConnectInfoDestruct(CRV_CONNECTINFO* record) noexcept {
  if (record == nullptr) return;
  std::free(record->points);
  std::free(record->nodes);
  std::free(record);
}

int CRV_ConnectInfoHitNode(CRV_CONNECTINFO* record, tagPOINT /*point*/, const tagRECT* rect,
                           int which) noexcept {
  if (record == nullptr || rect == nullptr) return 0;
  for (int k = 0; k < record->candidateCount; ++k) {
    if (k == record->first || k == record->second || !TavMath::IsPointInRect(*rect, record->points[k]))
      continue;
    if (which == 1) record->first = k;
    if (which == 2) record->second = k;
    return 1;
  }
  return 0;
}

int CRV_ConnectInfoEmpty(const CRV_CONNECTINFO* record) noexcept {
  return record == nullptr || record->candidateCount < 1;
}

int CRV_ConnectInfoHasNode(const CRV_CONNECTINFO* record, int which) noexcept {
  return Choice(record, which) >= 0;
}

int CRV_ConnectInfoGetNumber(const CRV_CONNECTINFO* record, int which) noexcept {
  const int choice = Choice(record, which);
  return choice < 0 ? -1 : record->nodes[choice];
}

int CRV_ConnectInfoGetPoint(const CRV_CONNECTINFO* record, int which, tagPOINT* out) noexcept {
  const int choice = Choice(record, which);
  if (choice < 0) return 0;
  if (out != nullptr) *out = record->points[choice];
  return 1;
}
