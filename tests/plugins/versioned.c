/* A program that is there for its version resource alone. */
int main(void) { return 0; }
