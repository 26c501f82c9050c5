// A plug-in that needs a function that nobody has.

int functionThatNobodyHas();

extern "C" int answer()
{
    return functionThatNobodyHas();
}
