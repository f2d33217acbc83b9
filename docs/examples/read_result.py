"""Prints the largest value of every node table in a result file: python3 read_result.py FILE.lmop"""
import sys
import h5py

with h5py.File(sys.argv[1], "r") as file:
    numbers = file["mesh/node_numbers"][:]
    for case in file["cases"].values():
        for step in case["steps"].values():
            for component, table in step.items():
                if table.attrs["location"] == 1 and "items" not in table.attrs and table.size:
                    worst = table[:].argmax()
                    print(case.attrs["name"].decode(), step.attrs["name"].decode(), step.attrs["value"],
                          component, table[worst], "at node", numbers[worst], sep="\t")
