#pragma once
// The node-type byte: one per point of a path, at the same index.
//
//   bits 6-7  kind        0x00 move, 0x40 line end, 0x80 curve end, 0xC0 Bezier control point
//   bits 4-5  continuity  0x00 cusp, 0x10 smooth, 0x20 symmetric
//   bit  3    closed      on the move node and on the last node of a closed subpath, nowhere else
//   bit  2    user        on-curve: the node that the user sees; control point: the handle is shown
//   bit  1    letter      on a move node: this subpath starts a new letter
//   bit  0    enabled     the node is selected for editing
//
// A path is well formed when every subpath begins with exactly one move node, a line node follows an on-curve
// node, a curve node is preceded by exactly two control points which follow an on-curve node, and a closed
// subpath carries the closed flag on its first and last node, which share one position; of these two the move
// node carries the user flag.

#include "lumo/export.h"

/// How the handles on both sides of a node relate.
enum class ContinuityType : int { cusp = 0, smooth = 1, symmetric = 2 };

/// One byte; converts to and from `unsigned char`, may be copied with memcpy, and has no constructor cost.
struct LUMO_TYPE NODETYPE {
  /// Masks and values of the bits, as the table at the top of the file has them.
  static constexpr unsigned char kKindMask = 0xC0;
  static constexpr unsigned char kMove = 0x00;
  static constexpr unsigned char kLine = 0x40;
  static constexpr unsigned char kCurve = 0x80;
  static constexpr unsigned char kControl = 0xC0;
  static constexpr unsigned char kContinuityMask = 0x30;
  static constexpr unsigned char kSmooth = 0x10;
  static constexpr unsigned char kSymmetric = 0x20;
  static constexpr unsigned char kClosed = 0x08;
  static constexpr unsigned char kUser = 0x04;
  static constexpr unsigned char kLetter = 0x02;
  static constexpr unsigned char kEnabled = 0x01;
  /// Enabled and user flag together: an on-curve node with both counts as selected.
  static constexpr unsigned char kSelected = kEnabled | kUser;

  NODETYPE() = default;
  /// From and to the byte.
  constexpr NODETYPE(unsigned char bits) : value(bits) {}
  constexpr operator unsigned char() const { return value; }

  /// The kind.
  constexpr bool IsMove() const { return value < kLine; }
  constexpr bool IsLine() const { return (value & kKindMask) == kLine; }
  constexpr bool IsCurve() const { return (value & kKindMask) == kCurve; }
  constexpr bool IsControl() const { return value >= kControl; }
  constexpr bool IsOnCurve() const { return value < kControl; }
  /// The flags.
  constexpr bool IsClosed() const { return (value & kClosed) != 0; }
  constexpr bool IsUser() const { return (value & kUser) != 0; }
  constexpr bool IsLetter() const { return (value & kLetter) != 0; }
  constexpr bool IsEnabled() const { return (value & kEnabled) != 0; }
  /// On-curve, enabled and a user node.
  constexpr bool IsSelected() const { return IsOnCurve() && (value & kSelected) == kSelected; }
  /// The continuity.
  constexpr bool IsCusp() const { return (value & kContinuityMask) == 0; }
  /// Bits 6 and 7: kMove, kLine, kCurve or kControl.
  constexpr unsigned char Kind() const { return value & kKindMask; }
  /// Bits 4 and 5.
  constexpr ContinuityType Continuity() const { return static_cast<ContinuityType>((value >> 4) & 3); }

  /// Write the kind (kMove, kLine, kCurve, kControl) or the continuity alone.
  constexpr void SetKind(unsigned char kind) {
    value = static_cast<unsigned char>((value & ~kKindMask) | (kind & kKindMask));
  }
  constexpr void SetContinuity(ContinuityType continuity) {
    value =
        static_cast<unsigned char>((value & ~kContinuityMask) | ((static_cast<int>(continuity) & 3) << 4));
  }
  /// Sets or clears the given bits.
  constexpr void Set(unsigned char flags, bool on) {
    value = static_cast<unsigned char>(on ? value | flags : value & ~flags);
  }
  /// Bit by bit.
  constexpr NODETYPE& operator|=(unsigned char bits) {
    return value = static_cast<unsigned char>(value | bits), *this;
  }
  constexpr NODETYPE& operator&=(unsigned char bits) {
    return value = static_cast<unsigned char>(value & bits), *this;
  }
  constexpr NODETYPE& operator^=(unsigned char bits) {
    return value = static_cast<unsigned char>(value ^ bits), *this;
  }

  /// The byte.
  unsigned char value;
};
static_assert(sizeof(NODETYPE) == 1);
