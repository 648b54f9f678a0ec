#include <algorithm>

#include "lumo/offset_corners.h"
#include "lumo/offset_settings.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

OffsetSettings::OffsetSettings(OffsetCorner* cornerType, OffsetCorner* cap, double offset,
                               bool offsetInwards) noexcept
    : OffsetSettings(cornerType, cap, nullptr, offset, offsetInwards) {}

OffsetSettings::OffsetSettings(OffsetCorner* cornerType, OffsetCorner* startCap, OffsetCorner* endCap,
                               double offset, bool offsetInwards) noexcept
    : cornerType_(cornerType),
      startCap_(startCap),
      endCap_(endCap),
      offset_(offset),
      offsetInwards_(offsetInwards) {
  repairSettings_.SetFixTightEndpointRadius(true);
  AdjustOffsetErrorTolerance();
}

OffsetSettings& OffsetSettings::operator=(const OffsetSettings& other) noexcept {
  // The joins are shared afterwards, and the ones held before are given up without deletion: whoever assigns
  // settings decides which of the two stays the owner.
  cornerType_ = other.cornerType_;
  startCap_ = other.startCap_;
  endCap_ = other.endCap_;
  offset_ = other.offset_;
  closeShape_ = other.closeShape_;
  combineShape_ = other.combineShape_;
  maxOffsetError_ = other.maxOffsetError_;
  maxOffsetErrorSqrd_ = other.maxOffsetErrorSqrd_;
  maxConnectError_ = other.maxConnectError_;
  maxConnectErrorSqrd_ = other.maxConnectErrorSqrd_;
  offsetInwards_ = other.offsetInwards_;
  openCurveOffsetSide_ = other.openCurveOffsetSide_;
  repairSettings_ = other.repairSettings_;
  return *this;
}

OffsetSettings::~OffsetSettings() { DeleteJoins(); }

void OffsetSettings::DeleteJoins() noexcept {
  delete cornerType_;
  if (startCap_ != cornerType_) delete startCap_;
  if (endCap_ != cornerType_ && endCap_ != startCap_) delete endCap_;
}

void OffsetSettings::AdjustOffsetErrorTolerance() noexcept {
  // The sign counts: every negative offset gets the least value.
  const double limit = (std::max)(kLeastOffsetError, offset_ / 100.0);
  if (maxOffsetError_ > limit) SetMaxOffsetError(limit);
}

}  // namespace Lumo::Offset
