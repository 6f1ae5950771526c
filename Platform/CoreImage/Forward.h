#pragma once

namespace RVCore {

class CIColorControls;
class CIFilter;
class CIGaussianBlur;
class FilterScratch;
class FilterWorkers;
struct FilterStep;

} // namespace RVCore
