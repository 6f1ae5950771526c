#pragma once

namespace RVCore {

class CIColorControls;
class CIFilter;
class CIGaussianBlur;
class FilterScratch;
struct FilterStep;

} // namespace RVCore
