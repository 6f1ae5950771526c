#pragma once

namespace RVCore {

class RVBaseView;
class RVGroupView;
class RVIntrinsicView;
class RVSpacerView;

} // namespace RVCore
