#include "relaxation/simplex.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tevo::relaxation {

namespace {

std::size_t Z(int32_t i) { return static_cast<std::size_t>(i); }

int32_t Vertex_Count(const Simplex_State& st) { return st.Param_Count + 1; }

// Evaluates the trial point; false when the value is not a number.
bool Evaluate(Simplex_State& st, const Criterion_Fn& criterion, float& e) {
  e = criterion(st.Trial);
  return std::isfinite(e);
}

void Replace(Simplex_State& st, float e, int32_t h) {
  for (int32_t p = 0; p < st.Param_Count; ++p) st.Simplex[Z(p)][Z(h)] = st.Trial[Z(p)];
  st.Vertex_Error[Z(h)] = e;
}

}  // namespace

void Find_Hl(Simplex_State& st) {
  st.High = 0;
  st.Low = 0;
  for (int32_t v = 1; v < Vertex_Count(st); ++v) {
    if (st.Vertex_Error[Z(v)] > st.Vertex_Error[Z(st.High)]) st.High = v;
    if (st.Vertex_Error[Z(v)] < st.Vertex_Error[Z(st.Low)]) st.Low = v;
  }
}

Simplex_Step Simplex_Begin(Simplex_State& st, std::span<const float> start, std::span<const float> step,
                           std::span<const float> tol, std::span<const int16_t> fix, Root_Half root,
                           const Criterion_Fn& criterion) {
  const auto n = static_cast<int32_t>(start.size());
  st.Param_Count = n;
  st.Iterations = 0;
  st.Step_Value.assign(step.begin(), step.end());
  st.Tol_Value.assign(tol.begin(), tol.end());
  st.Fix_Flag.assign(fix.begin(), fix.end());
  st.Trial.assign(Z(n), 0.0f);
  st.Vertex_Error.assign(Z(n + 1), 0.0f);
  st.Simplex.assign(Z(n), std::vector<float>(Z(n + 1), 0.0f));
  // The offset of every vertex off the diagonal, and the diagonal step.
  const double half = root == Root_Half::Float ? static_cast<double>(0.70710677f) : 0.707106781186545;
  const double d_exact = (std::sqrt(static_cast<double>(n) + 1) - 1.0) * half / n;
  const double d = root == Root_Half::Float ? static_cast<double>(static_cast<float>(d_exact)) : d_exact;
  for (int32_t p = 0; p < n; ++p) {
    std::vector<float>& row = st.Simplex[Z(p)];
    const bool fixed = st.Fix_Flag[Z(p)] != 0;
    row[0] = start[Z(p)];
    const auto base = static_cast<float>(fixed ? row[0] : d * st.Step_Value[Z(p)] + row[0]);
    for (int32_t v = 1; v <= n; ++v) row[Z(v)] = base;
    if (!fixed) row[Z(p + 1)] = static_cast<float>(st.Step_Value[Z(p)] * half + base);
  }
  for (int32_t v = 0; v <= n; ++v) {
    for (int32_t p = 0; p < n; ++p) st.Trial[Z(p)] = st.Simplex[Z(p)][Z(v)];
    if (!Evaluate(st, criterion, st.Vertex_Error[Z(v)])) return Simplex_Step::Arithmetic_Error;
  }
  Find_Hl(st);
  return Simplex_Step::Go_On;
}

bool Simplex_Converged(const Simplex_State& st) {
  for (int32_t p = 0; p < st.Param_Count; ++p) {
    const std::vector<float>& row = st.Simplex[Z(p)];
    float lo = row[0], hi = row[0];
    for (float x : row) lo = std::min(lo, x), hi = std::max(hi, x);
    if (hi - lo > st.Tol_Value[Z(p)]) return false;
  }
  return true;
}

Simplex_Step Simplex_Iterate(Simplex_State& st, const Criterion_Fn& criterion) {
  const int32_t n = st.Param_Count, h = st.High, l = st.Low;
  ++st.Iterations;
  // Reflection of the worst vertex through the centre of the others.
  for (int32_t p = 0; p < n; ++p) {
    float s = 0;
    for (int32_t v = 0; v <= n; ++v)
      if (v != h) s += st.Simplex[Z(p)][Z(v)];
    st.Trial[Z(p)] = (s + s) / static_cast<float>(n) - st.Simplex[Z(p)][Z(h)];
  }
  float e = 0;
  if (!Evaluate(st, criterion, e)) return Simplex_Step::Arithmetic_Error;
  if (e < st.Vertex_Error[Z(l)]) {
    // Expansion: the reflected point takes the worst place at once, the
    // trial goes half as far again.
    for (int32_t p = 0; p < n; ++p) {
      const float x = st.Trial[Z(p)] * 1.5f - st.Simplex[Z(p)][Z(h)] * 0.5f;
      st.Simplex[Z(p)][Z(h)] = st.Trial[Z(p)];
      st.Trial[Z(p)] = x;
    }
    st.Vertex_Error[Z(h)] = e;
    float e2 = 0;
    if (!Evaluate(st, criterion, e2)) return Simplex_Step::Arithmetic_Error;
    if (e2 < st.Vertex_Error[Z(h)]) Replace(st, e2, h);
  } else if (e < st.Vertex_Error[Z(h)]) {
    Replace(st, e, h);
  } else {
    // Contraction towards the worst vertex; failing that, shrink every
    // vertex halfway towards the best.
    for (int32_t p = 0; p < n; ++p) st.Trial[Z(p)] = st.Simplex[Z(p)][Z(h)] * 0.75f + st.Trial[Z(p)] * 0.25f;
    float e2 = 0;
    if (!Evaluate(st, criterion, e2)) return Simplex_Step::Arithmetic_Error;
    if (e2 < st.Vertex_Error[Z(h)]) {
      Replace(st, e2, h);
    } else {
      for (int32_t v = 0; v <= n; ++v) {
        if (v == l) continue;
        for (int32_t p = 0; p < n; ++p) {
          std::vector<float>& row = st.Simplex[Z(p)];
          row[Z(v)] = (row[Z(l)] + row[Z(v)]) * 0.5f;
          st.Trial[Z(p)] = row[Z(v)];
        }
        if (!Evaluate(st, criterion, st.Vertex_Error[Z(v)])) return Simplex_Step::Arithmetic_Error;
      }
    }
  }
  Find_Hl(st);
  return Simplex_Converged(st) ? Simplex_Step::Converged : Simplex_Step::Go_On;
}

Simplex_Step Simplex_Run(Simplex_State& st, const Criterion_Fn& criterion,
                         const std::function<bool(const Simplex_State&)>& go_on) {
  for (;;) {
    const Simplex_Step step = Simplex_Iterate(st, criterion);
    if (step == Simplex_Step::Arithmetic_Error) return step;
    const bool more = go_on ? go_on(st) : true;
    if (step == Simplex_Step::Converged || !more) return step;
  }
}

}  // namespace tevo::relaxation
