#include <LayoutEngine/LayoutEngine.h>

using namespace RVCore;

// One room without the others: two columns, the second twice as wide, share what there is.
int main()
{
    LayoutEngine engine;
    const LayoutVariable narrow = engine.addVariable(1);
    const LayoutVariable wide = engine.addVariable(2);
    const LayoutTerm twice[] = {{.variable = wide}, {.variable = narrow, .coefficient = -2}};
    const LayoutTerm together[] = {{.variable = narrow}, {.variable = wide}};
    engine.addConstraint(twice, LayoutRelation::equal, 0, layoutPriorityRequired, 1);
    engine.addConstraint(together, LayoutRelation::equal, 300, layoutPriorityRequired, 2);
    return engine.value(narrow) == 100 && engine.value(wide) == 200 ? 0 : 1;
}
