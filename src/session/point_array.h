// Two-dimensional point storage addressed (point, row).
//
// Every point array of the session is sized together: capacity n gives the
// index range 0..n (one spare element behind the last point) and rows
// 0..Array_Rows (one spare row). Each row is contiguous, so a row can be handed
// to the transform or the drawing code as a plain span.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tevo {

class Point_Array {
 public:
  Point_Array() = default;

  // Discards the content and allocates points 0..n of rows 0..rows, all zero.
  void Allocate(int32_t n, int32_t rows) {
    stride_ = n < 0 ? 0 : static_cast<std::size_t>(n) + 1;
    rows_ = rows < 0 ? 0 : static_cast<std::size_t>(rows) + 1;
    data_.assign(stride_ * rows_, 0.0f);
  }
  void Clear() {
    data_.clear();
    data_.shrink_to_fit();
    stride_ = rows_ = 0;
  }

  float& operator()(std::size_t point, std::size_t row = 0) {
    return data_[row * stride_ + point];
  }
  float operator()(std::size_t point, std::size_t row = 0) const {
    return data_[row * stride_ + point];
  }

  std::span<float> Row(std::size_t row) {
    return {data_.data() + row * stride_, stride_};
  }
  std::span<const float> Row(std::size_t row) const {
    return {data_.data() + row * stride_, stride_};
  }

  // Points per row including the spare one (capacity + 1).
  std::size_t Stride() const { return stride_; }
  // Rows including the spare one.
  std::size_t Rows() const { return rows_; }
  bool Empty() const { return data_.empty(); }

 private:
  std::vector<float> data_;
  std::size_t stride_ = 0;
  std::size_t rows_ = 0;
};

}  // namespace tevo
