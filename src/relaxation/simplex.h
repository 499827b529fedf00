// The downhill simplex (Nelder-Mead) of the relaxation fit, written once for
// any number of parameters: the T1/T2 window fits three, the line separation
// four per peak. The arithmetic is single precision as in the windows that
// show its numbers; the caller's criterion sees the trial point.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tevo::relaxation {

// Criterion of the trial point: a sum of squares, accumulated in float.
using Criterion_Fn = std::function<float(std::span<const float> trial)>;

// The factor 1/sqrt(2) of the first simplex: the relaxation window takes it
// as a float, the line separation in double.
enum class Root_Half { Float, Double };

enum class Simplex_Step { Go_On, Converged, Arithmetic_Error };

struct Simplex_State {
  int32_t Param_Count = 0;
  // Simplex[p][v]: parameter p of vertex v, both from 0; vertex 0 holds the
  // start values, there are Param_Count + 1 vertices.
  std::vector<std::vector<float>> Simplex;
  std::vector<float> Vertex_Error;
  std::vector<float> Trial;
  std::vector<float> Step_Value, Tol_Value;
  std::vector<int16_t> Fix_Flag;
  int32_t High = 0, Low = 0;  // worst and best vertex
  int32_t Iterations = 0;
};

// Largest and smallest Vertex_Error, ties keeping the lower index.
void Find_Hl(Simplex_State& st);

// Builds the first simplex around `start` (fixed parameters keep their value
// in every vertex) and evaluates every vertex. Arithmetic_Error when a
// criterion is not finite.
Simplex_Step Simplex_Begin(Simplex_State& st, std::span<const float> start, std::span<const float> step,
                           std::span<const float> tol, std::span<const int16_t> fix, Root_Half root,
                           const Criterion_Fn& criterion);

// One iteration: reflection, then expansion (1.5 / 0.5, the reflected point
// kept at once), replacement, or contraction (0.75 / 0.25) and shrink towards
// the best vertex; then the convergence test, every parameter's spread over
// the vertices within its tolerance.
Simplex_Step Simplex_Iterate(Simplex_State& st, const Criterion_Fn& criterion);

// True when every parameter's spread over the vertices is within Tol_Value.
bool Simplex_Converged(const Simplex_State& st);

// Runs iterations until convergence, an arithmetic error, or `go_on`
// (called after each iteration with the count and the best error: the place
// to show progress, repaint and poll a stop request) returns false.
Simplex_Step Simplex_Run(Simplex_State& st, const Criterion_Fn& criterion,
                         const std::function<bool(const Simplex_State&)>& go_on);

}  // namespace tevo::relaxation
