// A shared library that is no module.

extern "C" int somethingElse();
int somethingElse() {
  return 7;
}
