#pragma once
// All parameters of one offset operation, together with the join objects that it owns.

#include "lumo/export.h"
#include "lumo/repair.h"

namespace Lumo {
class OffsetCorner;

namespace Offset {

using Lumo::OffsetCorner;

/// Which side of an open subpath is offset.
enum class EOpenCurveOffsetSide : int {
  left = 0,   ///< the left of travel: as the subpath stands
  right = 1,  ///< the right of travel
  both = 2    ///< both sides, joined by caps into one outline
};

/// Owns the join objects handed to its constructors (each may be null) and deletes each distinct one once.
///
/// Assignment copies the pointers, not the joins: of two settings that share joins only one may be destroyed.
/// That is why there is no copy constructor.
class LUMO_API OffsetSettings {
 public:
  /// One cap for both ends of open subpaths.
  OffsetSettings(OffsetCorner* cornerType, OffsetCorner* cap, double offset, bool offsetInwards) noexcept;
  /// A cap for each end.
  OffsetSettings(OffsetCorner* cornerType, OffsetCorner* startCap, OffsetCorner* endCap, double offset,
                 bool offsetInwards) noexcept;
  OffsetSettings(const OffsetSettings&) = delete;
  OffsetSettings& operator=(const OffsetSettings& other) noexcept;
  ~OffsetSettings();

  /// The join at interior corners, the cap at the start and the cap at the end of open subpaths (the start
  /// cap when no end cap was given).
  OffsetCorner* CornerType() const noexcept { return cornerType_; }
  OffsetCorner* StartCap() const noexcept { return startCap_; }
  OffsetCorner* EndCap() const noexcept { return endCap_ != nullptr ? endCap_ : startCap_; }
  /// Signed distance in the path's units; positive lies outside closed subpaths and to the left of open ones.
  double Offset() const noexcept { return offset_; }
  /// Whether open results are closed into a shape; default true.
  bool CloseShape() const noexcept { return closeShape_; }
  /// Whether closed results are united; default true. Their coordinates are then rounded to whole units.
  bool CombineShape() const noexcept { return combineShape_; }
  /// Largest deviation of an approximated offset curve, in units: the offset over 100, at least 100 (also for
  /// every negative offset) and at most 1000, until it is set.
  double MaxOffsetError() const noexcept { return maxOffsetError_; }
  /// Its square.
  double MaxOffsetErrorSqrd() const noexcept { return maxOffsetErrorSqrd_; }
  /// Largest gap that is closed by moving end points together, 100 units.
  double MaxConnectError() const noexcept { return maxConnectError_; }
  /// Its square.
  double MaxConnectErrorSqrd() const noexcept { return maxConnectErrorSqrd_; }
  /// Whether only the closed subpaths directly inside the outer ones are offset.
  bool OffsetInwards() const noexcept { return offsetInwards_; }
  /// Which side of open subpaths is offset; default both.
  EOpenCurveOffsetSide OpenCurveOffsetSide() const noexcept { return openCurveOffsetSide_; }
  /// The repair that each subpath gets before it is offset: the defaults of CurveRepairSettings, but tight
  /// end radii are repaired.
  const CurveRepairSettings& RepairSettings() const noexcept { return repairSettings_; }
  CurveRepairSettings& RepairSettings() noexcept { return repairSettings_; }

  /// See the accessors of the same names.
  void SetCloseShape(bool close) noexcept { closeShape_ = close; }
  void SetCombineShape(bool combine) noexcept { combineShape_ = combine; }
  void SetOpenCurveOffsetSide(EOpenCurveOffsetSide side) noexcept { openCurveOffsetSide_ = side; }
  /// Taken as given: the automatic value is not applied again, so a caller may go above it.
  void SetMaxOffsetError(double error) noexcept {
    maxOffsetError_ = error;
    maxOffsetErrorSqrd_ = error * error;
  }

 private:
  void AdjustOffsetErrorTolerance() noexcept;
  void DeleteJoins() noexcept;

  OffsetCorner* cornerType_;
  OffsetCorner* startCap_;
  OffsetCorner* endCap_;
  double offset_;
  bool closeShape_ = true;
  bool combineShape_ = true;
  double maxOffsetError_ = 1000.0;
  double maxOffsetErrorSqrd_ = 1000000.0;
  double maxConnectError_ = 100.0;
  double maxConnectErrorSqrd_ = 10000.0;
  bool offsetInwards_;
  EOpenCurveOffsetSide openCurveOffsetSide_ = EOpenCurveOffsetSide::both;
  CurveRepairSettings repairSettings_;
};

}  // namespace Offset
}  // namespace Lumo
