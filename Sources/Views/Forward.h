#pragma once

namespace RVCore {

class RVBaseView;
class RVColorButton;
class RVGroupView;
class RVIntrinsicView;
class RVSpacerView;

} // namespace RVCore
