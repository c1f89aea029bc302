# For tests that compile the library once more: most of that time goes into reading the same headers.
target_precompile_headers(vexxml_objects PRIVATE
  <algorithm> <array> <atomic> <deque> <fstream> <functional> <map> <memory> <mutex> <queue>
  <string> <string_view> <unordered_map> <unordered_set> <utility> <variant> <vector>)
