/* A program that exists only for its version resource. */
int main(void) { return 0; }
